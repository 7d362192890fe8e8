// curve_fields.h: the fields of a table of curves, row by row, as texts, numbers and marks.
#pragma once
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/line_reader.h"
#include "formats/csv/csv_records.h"
#include "formats/csv/curve_columns.h"
#include "formats/file_report.h"

namespace formats::csv {

inline constexpr double largest_value = 1e30;  // what is beyond it marks an absent value

class CurveFields {
 public:
  /// Takes the header. A failure in the report says why its table can't be read.
  CurveFields(LineReader& lines, FileReport& report);

  /// Goes to the next row that can be told into fields; the report has those that can't. Ends at a failure.
  bool next_row();
  [[nodiscard]] std::int64_t line_number() const { return record_.line_number; }

  /// A field as it stands, without blanks at its ends; empty where the table doesn't have the column.
  [[nodiscard]] std::string_view field(CurveColumn column) const;
  /// A name; bytes that aren't UTF-8 are taken as Windows-1252.
  [[nodiscard]] std::string text(CurveColumn column) const;

  // Of an empty field, and of one that can't be read, nothing; the report has the latter.
  /// NaN for nothing. A decimal comma is the table's failure.
  double number(CurveColumn column);
  std::optional<double> number_within(CurveColumn column, double least, double most);
  /// From 0 up.
  std::optional<int> whole_number(CurveColumn column, int most);
  std::optional<bool> mark(CurveColumn column);

  /// Notes that the field of a column could not be taken: "frequency_Hz 'x' is ...".
  void remark(CurveColumn column, std::string_view what);

 private:
  void take_header(std::string_view line);

  LineReader& lines_;
  FileReport& report_;
  CsvRecords records_;
  CsvRecord record_;
  std::size_t field_count_ = 0;  // of the header
  std::array<std::optional<std::size_t>, curve_column_count> places_;
};

}  // namespace formats::csv
