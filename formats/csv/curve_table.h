// curve_table.h: curves of stations as a table of comma-separated text, for spreadsheets and scripts.
//
// A row for each point of each curve, columns in any order with their units in the header; UTF-8, RFC 4180.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/file_report.h"

namespace formats::csv {

/// One point; what isn't known is NaN. A tipper has its parts in place of resistivity and phase.
struct CurvePoint {
  double frequency = 0.0;  // Hz
  double resistivity;      // ohm-m; tipper: real part
  double phase;            // degrees; tipper: imaginary part
  double resistivity_error;
  double phase_error;
  bool resistivity_masked = false;
  bool phase_masked = false;
};

/// Consecutive rows that agree in all columns of names.
struct CurveRows {
  std::string line;
  double station = 0.0;
  std::string site;                   // name; empty if it has none
  std::string data_type;              // ExHx, ExHy, EyHx, EyHy, QP, HzHx, HzHy
  std::optional<int> reference_type;  // 0 to 2
  std::optional<double> dipole;       // m
  std::optional<double> scan_rate;    // Hz; 0: merged
  std::optional<int> event;           // of raw readings
  std::string date;                   // of the measurement, 2019-01-07; empty if it isn't known
  std::optional<double> azimuth;      // of Hx, degrees from north
  std::optional<double> latitude;     // degrees
  std::optional<double> longitude;
  std::optional<double> elevation;  // m
  std::optional<double> easting;    // m, map coordinates of the survey
  std::optional<double> northing;
  std::int64_t line_number = 0;  // of the first row, where they were read
  std::vector<CurvePoint> points;
};

/// The first line, with its end: a comma-separated list of the columns.
std::string curve_table_header();
/// The rows of a curve, each with its end.
std::string curve_table_rows(const CurveRows& curve);

/// Whether a line is the header of such a table: it has the columns that no curve can do without.
bool is_curve_table_header(std::string_view line);

/// Reads a table. Rows of a curve may stand anywhere. What can't be read is in the report; its failure says
/// why there is nothing.
std::vector<CurveRows> read_curve_table(LineReader& lines, FileReport& report);

}  // namespace formats::csv
