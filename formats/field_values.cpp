#include "formats/field_values.h"

#include <algorithm>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/file_report.h"

namespace formats {

namespace {

constexpr std::size_t longest_number = 64;  // characters of a number in any known file, with room to spare

const char* item_end(const char* place, const char* line_end) {
  return std::find_if(place, line_end, is_separator);
}

// Reads an item that is one complete number but for a plus sign or a Fortran exponent letter.
bool read_fortran_number(std::string_view item, double& value) {
  std::array<char, longest_number> text{};
  if (item.starts_with('+')) {
    item.remove_prefix(1);
  }
  if (item.empty() || item.size() > text.size()) {
    return false;
  }
  std::transform(item.begin(), item.end(), text.begin(),
                 [](char c) { return c == 'D' || c == 'd' ? 'E' : c; });
  const char* const text_end = text.data() + item.size();
  const auto [after, failure] = std::from_chars(text.data(), text_end, value);
  return after == text_end && failure == std::errc{};
}

}  // namespace

std::size_t count_items(std::string_view line) {
  const char* place = line.data();
  const char* const line_end = place + line.size();
  std::size_t count = 0;
  while ((place = skip_separators(place, line_end)) != line_end) {
    place = item_end(place, line_end);
    ++count;
  }
  return count;
}

// Reads an item that is not simply a decimal number, and reports what became of it.
const char* field_values_detail::take_odd_value(const char* place, const char* line_end, double& value,
                                                FileReport& report, std::int64_t line_number,
                                                OddText odd_text) {
  const char* const after = item_end(place, line_end);
  const std::string_view item(place, static_cast<std::size_t>(after - place));
  if (read_fortran_number(item, value) && std::isfinite(value)) {
    value = std::abs(value) > largest_value ? double{no_data} : value;
    return after;
  }
  const std::string letters = upper_case(item.substr(item.find_first_not_of("+-") == 1 ? 1 : 0));
  value = numeric_value(item);  // an infinity if it is too large
  const bool is_number = is_numeric(item) || std::isinf(value);
  if (letters.starts_with("NAN") || letters.starts_with("INF") ||
      (!is_number && odd_text == OddText::absent)) {
    remark_unreadable(report, line_number, in_quotes(item) + " is not a number, taken as absent");
    value = no_data;
    return after;
  }
  if (!is_number) {
    remark_unreadable(report, line_number,
                      in_quotes(item) + " is not a number, taken as " + plain_text(value));
  }
  value = std::abs(value) > largest_value ? double{no_data} : value;
  return after;
}

}  // namespace formats
