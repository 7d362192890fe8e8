#include "import/readers/em1dfm_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "formats/field_values.h"
#include "formats/remarks.h"
#include "import/readers/reader_steps.h"
#include "import/reading_record.h"

namespace Module_data_file {

namespace {

using Module_database::Curve;

// What a frequency line holds behind its frequency and its word: the fields, 0 for an item that is skipped.
constexpr std::array<int, 7> items_of_both{0, 0, 1, 2, 0, 3, 4};
constexpr std::array<int, 4> items_of_quadrature{0, 1, 0, 3};

class Em1dfmReader {
 public:
  Em1dfmReader(const std::string& file, ImportMode mode, FileReport& report, StoreNotes& notes)
      : lines_(file), mode_(mode), report_(report), notes_(notes) {}

  // 0, or -1 after a failed store.
  int read(const FileProgress& progress) {
    next_line();  // the title
    reading_record().LineNumber.clear();
    bool more = next_line();
    while (more && !cut_) {
      if (line_.starts_with("LINE")) {
        take_line(line_);
        more = next_line();
      } else if (line_.starts_with("STAT")) {
        if (!read_station(line_)) {
          return -1;
        }
        more = !at_end_;
        if (progress) {
          progress(lines_.bytes_read(), lines_.file_size());
        }
      } else {
        remark_ignored(report_, lines_.line_number(),
                       in_quotes(line_) + " begins neither a line nor a station");
        more = next_line();
      }
    }
    return 0;
  }

 private:
  // Goes to the next line that isn't blank. False at the end of the file.
  bool next_line() {
    std::string_view bytes;
    while (lines_.next(bytes)) {
      line_ = upper_case(trimmed(bytes));
      if (!line_.empty()) {
        return true;
      }
    }
    line_.clear();
    at_end_ = true;
    return false;
  }

  void take_line(std::string_view line) {
    next_token(line);
    reading_record().LineNumber = text_from_field_file(next_token(line));
  }

  double take_number(std::string_view& line) {
    const std::string_view item = next_token(line);
    double value = 0.0;
    if (item.empty()) {
      remark_unreadable(report_, lines_.line_number(), "a number is missing, taken as 0");
      return value;
    }
    take_value(item.data(), item.data() + item.size(), value, report_, lines_.line_number());
    return value;
  }

  double take_coordinate(std::string_view& line) {
    const double value = take_number(line);
    return is_absent(value) ? 0.0 : value;
  }

  // Reads a station and goes to the line behind it. False after a failed store.
  bool read_station(std::string_view line) {
    ReadingRecord& record = reading_record();
    const std::int64_t first_line = lines_.line_number();
    // Two words stand before the numbers, in some files three.
    const std::size_t words = count_items(line) == 8 ? 3 : 2;
    for (std::size_t word = 0; word < words; ++word) {
      next_token(line);
    }
    record.Station = take_coordinate(line);
    record.MapX = take_coordinate(line);
    record.MapY = take_coordinate(line);
    record.Elevation = take_coordinate(line);
    const double count = std::trunc(take_coordinate(line));
    if (record.LineNumber.empty()) {
      remark_unreadable(report_, first_line, "the station stands before any line; its line is blank");
    }
    const double lines_read = read_frequencies(count, record.curve);
    if (lines_read < count && at_end_) {
      cut_ = true;
      report_.failure = "the file ends inside the station of line " + std::to_string(first_line) +
                        "; that station is not stored";
      return true;
    }
    if (lines_read != count) {
      remark_unreadable(
          report_, first_line,
          "the station has " + plain_text(lines_read) + " of " + plain_text(count) + " frequencies");
    }
    if (record.curve.count() == 0) {
      remark_unreadable(report_, first_line, "the station has no frequencies and is left out");
      return true;
    }
    return take_station();
  }

  // Reads up to `count` frequencies, but not into the next station or line. Gives the number of lines read.
  double read_frequencies(double count, Curve& curve) {
    curve.assign(0);
    double lines_read = 0.0;
    while (next_line() && lines_read < count && !line_.starts_with("STAT") && !line_.starts_with("LINE")) {
      append_frequency(line_, curve);
      lines_read += 1.0;
    }
    return lines_read;
  }

  void append_frequency(std::string_view line, Curve& curve) {
    const double frequency = take_coordinate(line);
    if (!(frequency > 0.0)) {
      remark_unreadable(report_, lines_.line_number(), "a frequency is not above 0; it is left out");
      return;
    }
    const std::size_t index = curve.count();
    curve.frequencies.push_back(static_cast<float>(frequency));
    curve.data.resize(curve.data.size() + Module_database::field_count, 0.0F);
    curve.mask.resize(curve.mask.size() + Module_database::mask_count, 0);
    for (const int field_number : {1, 2, 3, 4, 9, 10, 11, 12, 13}) {
      curve.value(field_number, index) = no_data;
    }
    const std::string_view word = next_token(line);
    if (word.find('B') != std::string_view::npos) {
      take_fields(items_of_both, line, curve, index);
    } else if (word.find('Q') != std::string_view::npos) {
      take_fields(items_of_quadrature, line, curve, index);
    } else {
      remark_unreadable(report_, lines_.line_number(),
                        in_quotes(word) + " tells no kind of data; the values are absent");
    }
    finish_point(curve, index);
  }

  template <std::size_t count>
  void take_fields(const std::array<int, count>& items, std::string_view line, Curve& curve,
                   std::size_t index) {
    for (const int field_number : items) {
      if (field_number == 0) {
        next_token(line);
      } else {
        curve.value(field_number, index) = single_or_absent(take_number(line));
      }
    }
  }

  // Stores the station that was read. False after a failed store.
  bool take_station() {
    ReadingRecord& record = reading_record();
    if (mode_ == ImportMode::import) {
      find_station_of_record(record);
    }
    if (!take_reading(mode_, quadrature_data_type, report_, notes_)) {
      return false;
    }
    add_to_scan_list(record, {quadrature_data_type});
    ++report_.sections;
    report_.frequencies = std::max(report_.frequencies, static_cast<std::int32_t>(record.curve.count()));
    ++record.EventNumber;  // within a file an event holds one reading of a kind
    return true;
  }

  LineReader lines_;
  ImportMode mode_;
  FileReport& report_;
  StoreNotes& notes_;
  std::string line_;  // trimmed, in upper case
  bool at_end_ = false;
  bool cut_ = false;  // the file ends inside a station
};

void set_up_header(ReadingRecord& record) {
  record.EventNumber = 0;
  record.DipoleLength = usual_dipole;
  if (record.Station == station_not_set) {
    record.Station = 0.0;
    record.StationSpacing = record.DipoleLength;
  }
  record.Filter = "Em1dfm";
}

}  // namespace

int read_em1dfm(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                const FileProgress& progress) {
  return run_reader(report, notes, [&] {
    set_up_header(reading_record());
    if (mode == ImportMode::import && store_header_block(notes) != 0) {
      return -1;
    }
    return Em1dfmReader(file, mode, report, notes).read(progress);
  });
}

}  // namespace Module_data_file
