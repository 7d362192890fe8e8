// curve_table.h: curves of stations as a table of comma-separated text, for spreadsheets and scripts.
//
// A row for each point of each curve, with the names of its columns and their units in the header; UTF-8,
// RFC 4180. Numbers have nine significant digits or as many as their 32-bit values need; an empty field is a
// value that isn't known. docs/formats/curve_csv.md has the columns.
#pragma once
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/file_report.h"

namespace formats::csv {

inline constexpr double not_known = std::numeric_limits<double>::quiet_NaN();

/// One point; what isn't known is NaN. A tipper has its parts in place of resistivity and phase, and one
/// error for both; QP has its in-phase and quadrature values there.
struct CurvePoint {
  double frequency = 0.0;                  // Hz
  double resistivity = not_known;          // ohm-m; tipper: real part
  double phase = not_known;                // degrees; tipper: imaginary part
  double resistivity_error = not_known;    // one standard deviation; tipper: that of either part
  double phase_error = not_known;          // the same; tipper: not written
  std::optional<bool> resistivity_masked;  // none: the table doesn't say
  std::optional<bool> phase_masked;
};

/// What a curve is known by, and what its rows say of its station.
struct CurveRows {
  std::string line;  // empty: the table doesn't say
  double station = 0.0;
  std::string site;                   // name; empty if it has none
  std::string data_type;              // ExHx, ExHy, EyHx, EyHy, QP, HzHx, HzHy
  std::optional<int> reference_type;  // 0 to 2
  std::optional<double> dipole;       // m
  std::optional<double> scan_rate;    // Hz; 0: merged
  std::optional<int> event;           // of raw readings
  std::string date;                   // of the measurement, 2019-01-07; empty if it isn't known
  std::optional<double> azimuth;      // of Hx, degrees from north
  std::optional<double> latitude;     // degrees, north positive; both or none
  std::optional<double> longitude;    // degrees, east positive
  std::optional<double> elevation;    // m
  std::optional<double> easting;      // m, map coordinates of the survey; both or none
  std::optional<double> northing;
  std::int64_t line_number = 0;  // of the first row, where they were read
  std::vector<CurvePoint> points;
};

/// The first line, with its end: a comma-separated list of the columns.
std::string curve_table_header();
/// The rows of a curve, each with its end.
std::string curve_table_rows(const CurveRows& curve);

/// Whether a line is the header of such a table: it has the columns that no curve can do without, whatever
/// separates them, and no fitted values beside the observed ones. (A table with semicolons or tabs is told so
/// when it is read.)
bool is_curve_table_header(std::string_view line);

/// Reads a table. Rows of a curve may stand anywhere; they belong together by line, station, data type,
/// reference type, dipole, scan rate and event. What can't be read is in the report; its failure says why
/// there is nothing. Throws std::runtime_error if the file can't be read.
/// @param progress called now and then; may be empty
std::vector<CurveRows> read_curve_table(LineReader& lines, FileReport& report,
                                        const std::function<void()>& progress = {});

}  // namespace formats::csv
