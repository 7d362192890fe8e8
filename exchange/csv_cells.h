// csv_cells.h: rows of comma-separated text with columns whose names have their units.
#pragma once
#include <string>
#include <string_view>

namespace Module_exchange {

/// A row as it is put together; lines end in CR LF (RFC 4180).
class CsvRow {
 public:
  CsvRow& add(std::string_view text);
  CsvRow& add(double value);  // with all digits that it takes; empty for what isn't finite
  CsvRow& add(float value);   // likewise, and empty for what is absent
  CsvRow& add_count(int value);
  [[nodiscard]] std::string text() const { return text_ + "\r\n"; }

 private:
  void add_cell(std::string_view cell);

  std::string text_;
  bool is_empty_ = true;
};

/// The end of a column's name for a unit: "_ohm_m", "_deg", "_m"; empty for none.
std::string unit_ending(std::string_view unit);

}  // namespace Module_exchange
