// csv_records.h: records of comma-separated text (RFC 4180) from the lines of a file, and fields as text.
//
// A field in quotes may hold commas, doubled quotes and line ends. Records and their number of fields are
// bounded, so that a file without closing quotes doesn't end up in memory.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"

namespace formats::csv {

struct CsvRecord {
  std::int64_t line_number = 0;     // of its first line, from 1
  std::vector<std::string> fields;  // without their quotes
  std::string fault;                // why they can't be told apart; empty if they can
};

class CsvRecords {
 public:
  explicit CsvRecords(LineReader& lines, char separator = ',') : lines_(lines), separator_(separator) {}

  /// Gives the next record that isn't an empty line. Behind a quote that isn't closed there are no more.
  /// @return false at the end
  bool next(CsvRecord& record);
  [[nodiscard]] bool has_open_quote() const { return ended_; }  // the last record, up to the end

 private:
  void take_lines(std::string_view line, CsvRecord& record);

  LineReader& lines_;
  char separator_;
  bool ended_ = false;
};

/// The fields of one line.
std::vector<std::string> csv_fields(std::string_view line, char separator);

/// A text as a field: in quotes where it needs them. One that a spreadsheet would take for a formula (it
/// begins with =, +, - or @ and is no number) gets an apostrophe before it, which csv_text takes off again.
std::string csv_field(std::string_view text);

/// The text of a field that csv_field has written.
std::string_view csv_text(std::string_view field);

}  // namespace formats::csv
