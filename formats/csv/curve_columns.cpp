#include "formats/csv/curve_columns.h"

#include <algorithm>
#include <array>

#include "core/text_fields.h"

namespace formats::csv {

namespace {

constexpr std::array<std::string_view, 4> unit_endings{"_OHM_M", "_DEG", "_HZ", "_M"};

// In upper case and without its unit.
std::string plain_name(std::string_view name) {
  std::string upper = upper_case(trimmed(name));
  for (const std::string_view unit : unit_endings) {
    if (upper.ends_with(unit)) {
      upper.resize(upper.size() - unit.size());
      break;
    }
  }
  return upper;
}

// A name has the column's unit or none.
bool is_name_of(std::string_view name, std::string_view column) {
  return equal_ignoring_case(trimmed(name), column) || upper_case(trimmed(name)) == plain_name(column);
}

bool contains(const CurveColumns& columns, CurveColumn column) {
  return std::ranges::find(columns, std::optional(column)) != columns.end();
}

}  // namespace

CurveColumns curve_columns(std::span<const std::string> header) {
  CurveColumns columns;
  for (const std::string& name : header) {
    const auto found = std::ranges::find_if(
        curve_column_names, [&](std::string_view column) { return is_name_of(name, column); });
    std::optional<CurveColumn> column;
    if (found != curve_column_names.end()) {
      column = static_cast<CurveColumn>(found - curve_column_names.begin());
    }
    columns.push_back(column && contains(columns, *column) ? std::nullopt : column);
  }
  return columns;
}

std::string missing_curve_column(const CurveColumns& columns) {
  for (const CurveColumn column : {CurveColumn::station, CurveColumn::data_type, CurveColumn::frequency}) {
    if (!contains(columns, column)) {
      return std::string(column_name(column));
    }
  }
  const bool has_values =
      contains(columns, CurveColumn::resistivity) || contains(columns, CurveColumn::phase) ||
      contains(columns, CurveColumn::tipper_real) || contains(columns, CurveColumn::tipper_imaginary);
  return has_values ? std::string() : "resistivity_ohm_m, phase_deg, tipper_real or tipper_imaginary";
}

bool has_fitted_values(std::span<const std::string> header) {
  return std::ranges::any_of(
      header, [](const std::string& name) { return upper_case(trimmed(name)).starts_with("FITTED_"); });
}

char header_separator(std::string_view header) {
  constexpr std::array<char, 3> separators{',', ';', '\t'};
  return *std::ranges::max_element(separators, {},
                                   [&](char separator) { return std::ranges::count(header, separator); });
}

}  // namespace formats::csv
