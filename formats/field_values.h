// field_values.h: the numbers of field files, item by item.
//
// Items are cut at blank, tab, comma, apostrophe and semicolon. A number may have a Fortran exponent, with D
// or without a letter ("1.5-101"). An absent value is no_data (-1e32); files mark one by a number beyond
// 1e30.
#pragma once
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <system_error>

#include <fast_float/fast_float.h>

#include "core/absent_value.h"
#include "formats/file_report.h"

namespace formats {

inline constexpr double largest_value = 1e30;

/// The value as it is stored: absent if it is too large or not a number.
inline float single_or_absent(double value) {
  return std::abs(value) <= largest_value ? static_cast<float>(value) : no_data;
}

/// What becomes of text that isn't wholly a number: a measured value is absent, an option of a head is taken
/// as far as it can be read.
enum class OddText { absent, leading_number };

namespace field_values_detail {
constexpr std::array<bool, 256> separator_table() {
  std::array<bool, 256> table{};
  for (std::size_t code = 0; code <= ' '; ++code) {
    table[code] = true;
  }
  for (const char separator : {',', '\'', ';'}) {
    table[static_cast<unsigned char>(separator)] = true;
  }
  return table;
}
inline constexpr std::array<bool, 256> separators = separator_table();
const char* take_odd_value(const char* place, const char* line_end, double& value, FileReport& report,
                           std::int64_t line_number, OddText odd_text);
}  // namespace field_values_detail

/// True for what items are cut at.
inline bool is_separator(char character) {
  return field_values_detail::separators[static_cast<unsigned char>(character)];
}

/// @return where the next item begins; line_end at the end of the line
inline const char* skip_separators(const char* place, const char* line_end) {
  while (place != line_end && is_separator(*place)) {
    ++place;
  }
  return place;
}

/// The items of a line.
std::size_t count_items(std::string_view line);

/// Reads the item that begins at `place`, which is not a separator. Text that isn't a number counts as
/// absent, or as its leading number or 0; NaN and infinity count as absent. The report says so.
/// @param value the number, no_data if it is absent
/// @return the item's end
inline const char* take_value(const char* place, const char* line_end, double& value, FileReport& report,
                              std::int64_t line_number, OddText odd_text = OddText::absent) {
  const auto [after, failure] = fast_float::from_chars(place, line_end, value);
  if (failure == std::errc{} && (after == line_end || is_separator(*after)) && std::isfinite(value)) {
    value = std::abs(value) > largest_value ? double{no_data} : value;
    return after;
  }
  return field_values_detail::take_odd_value(place, line_end, value, report, line_number, odd_text);
}

/// The first number with a comma for its decimal point ("1,25E+03") in a line whose numbers may all have one:
/// empty if a number has a point, or if several are joined by commas.
std::string_view decimal_comma_number(std::string_view line);

/// Reports the frequencies that are not above 0. They are stored as they came; lists, averages and outputs
/// leave them out.
void remark_on_frequencies(std::span<const float> frequencies, std::int64_t line_number, FileReport& report);

}  // namespace formats
