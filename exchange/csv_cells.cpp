#include "exchange/csv_cells.h"

#include <cmath>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "formats/csv/csv_records.h"

namespace Module_exchange {

void CsvRow::add_cell(std::string_view cell) {
  if (!is_empty_) {
    text_ += ',';
  }
  is_empty_ = false;
  text_ += cell;
}

CsvRow& CsvRow::add(std::string_view text) {
  add_cell(formats::csv::csv_field(text));
  return *this;
}

CsvRow& CsvRow::add(double value) {
  add_cell(std::isfinite(value) ? criterion_text(value) : std::string());
  return *this;
}

CsvRow& CsvRow::add(float value) {
  add_cell(std::isfinite(value) && !is_absent(double{value}) ? criterion_text(value) : std::string());
  return *this;
}

CsvRow& CsvRow::add_count(int value) {
  add_cell(plain_text(value));
  return *this;
}

std::string unit_ending(std::string_view unit) {
  return unit.empty()        ? ""
         : unit == "degrees" ? "_deg"
         : unit == "ohm-m"   ? "_ohm_m"
                             : "_" + std::string(unit);
}

}  // namespace Module_exchange
