#include "import/decode_table.h"

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_data_file {

namespace {

constexpr double largest_column = 9999.0;  // no file name is that long

}  // namespace

std::string decode_cell_text(const DecodeRow& row, DecodeColumn column) {
  switch (column) {
    case column_start:
      return format_number(row.start_column, "0");
    case column_width:
      return format_number(row.width, "0");
    case column_specify:
      return row.specified;
    case column_use_file_name:
      break;
  }
  return {};
}

bool set_decode_cell(DecodeRow& row, DecodeColumn column, std::string_view text) {
  if (column == column_specify) {
    row.specified = trimmed(text);
    return true;
  }
  const double value = numeric_value(text);
  if (column == column_use_file_name || !is_numeric(text) || value < 0.0 || value > largest_column) {
    return false;
  }
  const auto number = static_cast<std::int32_t>(numeric_value(format_number(value, "0")));
  (column == column_start ? row.start_column : row.width) = number;
  return true;
}

}  // namespace Module_data_file
