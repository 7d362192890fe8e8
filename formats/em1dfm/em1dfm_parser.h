// em1dfm_parser.h: the stations of a one-dimensional frequency-domain electromagnetic program's results.
//
// After a first line "FREQUENCY DOMAIN EM DATA" a line "LINE name" begins a line, and
// "STATION <word> station X Y elevation m" a station of m lines, one for each frequency. Words match in any
// case; blank lines don't count. What can't be read as it is goes into the file's report.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "formats/field_values.h"
#include "formats/file_report.h"

namespace formats::em1dfm {

/// The values of one frequency. A line of both parts has the in-phase and the quadrature value first, then
/// two more; a line of the quadrature alone has the first and the third of the four.
struct Point {
  float frequency = 0.0F;  // Hz, as it came, also if not above 0
  std::array<float, 4> values{no_data, no_data, no_data, no_data};
};

struct Station {
  std::string line;      // in upper case; empty before the first LINE
  double station = 0.0;  // these four are 0 where they can't be read
  double x = 0.0;
  double y = 0.0;
  double elevation = 0.0;
  std::vector<Point> points;  // at least one, in the order of the file
};

class Em1dfmParser {
 public:
  /// Skips the title. `reader` and `report` must outlive the parser.
  Em1dfmParser(LineReader& reader, FileReport& report);

  /// Reads the next station that has a frequency.
  /// @return false at the end. A file that ends inside a station says so in the report's failure, and that
  /// station is not given.
  bool next_station(Station& station);

 private:
  bool next_line();
  void take_line_name(std::string_view line);
  double take_number(std::string_view& line, OddText odd_text);
  double take_option(std::string_view& line);
  bool read_station(Station& station);
  double read_points(double count, std::vector<Point>& points);
  void append_point(std::string_view line, std::vector<Point>& points);

  LineReader& reader_;
  FileReport& report_;
  std::string line_;       // the current one, trimmed, in upper case
  std::string line_name_;  // of the stations that follow
  bool at_end_ = false;
};

}  // namespace formats::em1dfm
