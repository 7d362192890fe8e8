#include "formats/field_values.h"

#include <algorithm>
#include <string>
#include <system_error>

#include <fast_float/fast_float.h>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/file_report.h"

namespace formats {

namespace {

constexpr std::size_t longest_number = 64;  // characters of a number in any known file, with room to spare

bool is_digit_at(std::string_view text, std::size_t place) {
  return place < text.size() && text[place] >= '0' && text[place] <= '9';
}

const char* item_end(const char* place, const char* line_end) {
  return std::find_if(place, line_end, is_separator);
}

// Where the exponent of a number in Fortran's way begins, with a letter or without one; the text's end if
// there is none. Without a letter the number must have a point: "2019-10" is a date.
std::size_t exponent_place(std::string_view text) {
  const std::size_t letter = text.find_first_of("EeDd");
  if (letter != std::string_view::npos) {
    return letter;
  }
  const std::size_t sign = text.find_last_of("+-");
  const bool behind_point = sign != std::string_view::npos && text.find('.') < sign;
  return behind_point ? sign : text.size();
}

// Reads an item that is one complete number but for a plus sign or a Fortran exponent.
bool read_fortran_number(std::string_view item, double& value) {
  if (item.starts_with('+')) {
    item.remove_prefix(1);
  }
  std::array<char, longest_number + 1> text{};
  if (item.empty() || item.size() > longest_number) {
    return false;
  }
  const std::size_t mantissa = exponent_place(item);
  const std::string_view exponent = item.substr(mantissa);
  char* end = std::copy_n(item.begin(), mantissa, text.begin());
  if (!exponent.empty()) {
    *end++ = 'E';
    const bool has_letter = exponent.front() != '+' && exponent.front() != '-';
    end = std::copy(exponent.begin() + (has_letter ? 1 : 0), exponent.end(), end);
  }
  const auto [after, failure] = fast_float::from_chars(text.data(), end, value);
  const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
  const bool is_infinite_word = !std::isfinite(value) && !is_numeric(number);  // too large a number is none
  return after == end && failure != std::errc::invalid_argument && !is_infinite_word;
}

bool read_odd_number(std::string_view item, double& value) {
  if (read_fortran_number(item, value)) {
    return true;
  }
  value = is_numeric(item) ? numeric_value(item) : value;  // of whatever length
  return is_numeric(item);
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
  if (read_odd_number(item, value)) {
    value = std::abs(value) > largest_value ? double{no_data} : value;
    return after;
  }
  const std::string letters = upper_case(item.substr(item.find_first_not_of("+-") == 1 ? 1 : 0));
  const bool is_absent_mark = letters.starts_with("NAN") || letters.starts_with("INF");
  const double leading = numeric_value(item);
  value = is_absent_mark || odd_text == OddText::absent || std::abs(leading) > largest_value ? double{no_data}
                                                                                             : leading;
  remark_unreadable(
      report, line_number,
      in_quotes(item) + " is not a number, taken as " + (is_absent(value) ? "absent" : plain_text(value)));
  return after;
}

std::string_view decimal_comma_number(std::string_view line) {
  constexpr std::string_view blanks = " \t";
  std::string_view found;
  for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
    const std::string_view word = line.substr(0, line.find_first_of(blanks));
    line.remove_prefix(word.size());
    const std::size_t comma = word.find(',');
    if (word.find('.') != std::string_view::npos || word.find(',', comma + 1) != std::string_view::npos) {
      return {};
    }
    if (comma == std::string_view::npos) {
      continue;
    }
    std::string with_point(word);
    with_point[comma] = '.';
    const bool between_digits = is_digit_at(word, comma - 1) && is_digit_at(word, comma + 1);
    if (!between_digits || !is_numeric(with_point)) {
      return {};
    }
    found = found.empty() ? word : found;
  }
  return found;
}

void remark_on_frequencies(std::span<const float> frequencies, std::int64_t line_number, FileReport& report) {
  const auto is_odd = [](float frequency) { return !(frequency > 0.0F); };
  const auto count = std::ranges::count_if(frequencies, is_odd);
  if (count == 0) {
    return;
  }
  const float first = *std::ranges::find_if(frequencies, is_odd);
  remark_unreadable(
      report, line_number,
      (count == 1 ? std::string("1 frequency is") : std::to_string(count) + " frequencies are") +
          " not above 0 Hz (" + (is_absent(first) ? "absent" : plain_text(first)) +
          (count == 1 ? ")" : ", ...)") + ": stored, but left out of averages and outputs");
}

}  // namespace formats
