#include "core/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <optional>
#include <system_error>

#include <fast_float/fast_float.h>

#include "core/text_fields.h"

namespace {

constexpr int single_digits = 7;   // the reliable digits of a 32-bit value
constexpr int double_digits = 15;  // and of a 64-bit value

/// A finite value as 0.d1d2d3... times a power of ten; zero has no digits.
struct Decimal {
  bool negative = false;
  std::string digits;  // no leading zeros, no trailing zeros
  int point = 0;       // power of ten that the fraction is multiplied with
};

void normalise(Decimal& decimal) {
  const std::size_t last = decimal.digits.find_last_not_of('0');
  decimal.digits.resize(last == std::string::npos ? 0 : last + 1);
  const std::size_t leading = decimal.digits.find_first_not_of('0');
  if (leading == std::string::npos) {
    decimal = Decimal{};  // a zero has no sign
    return;
  }
  decimal.digits.erase(0, leading);
  decimal.point -= static_cast<int>(leading);
}

/// Takes "-d.ddde+XX" apart, the form that std::to_chars writes.
Decimal decimal_from_scientific(std::string_view text) {
  Decimal decimal;
  if (text.starts_with('-')) {
    decimal.negative = true;
    text.remove_prefix(1);
  }
  const std::size_t letter = text.find('e');
  for (const char c : text.substr(0, letter)) {
    if (c != '.') {
      decimal.digits += c;
    }
  }
  std::string_view exponent = text.substr(letter + 1);
  if (exponent.starts_with('+')) {
    exponent.remove_prefix(1);
  }
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), decimal.point);
  decimal.point += 1;
  normalise(decimal);
  return decimal;
}

template <std::floating_point Value>
Decimal shortest_decimal(Value value) {
  std::array<char, 64> buffer{};
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
  return decimal_from_scientific({buffer.data(), written.ptr});
}

template <std::floating_point Value>
Decimal decimal_of_digits(Value value, int digits) {
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                     std::chars_format::scientific, digits - 1);
  return decimal_from_scientific({buffer.data(), written.ptr});
}

Decimal decimal_of_integer(std::int64_t value) {
  Decimal decimal;
  decimal.negative = value < 0;
  decimal.digits = std::to_string(value).substr(decimal.negative ? 1 : 0);
  decimal.point = static_cast<int>(decimal.digits.size());
  normalise(decimal);
  return decimal;
}

/// Keeps the first `count` digits, rounding half away from zero; `count` may be 0 or below.
void round_to_digits(Decimal& decimal, int count) {
  if (count >= static_cast<int>(decimal.digits.size())) {
    return;
  }
  if (count < 0) {
    decimal = Decimal{};
    return;
  }
  const auto kept = static_cast<std::size_t>(count);
  const bool up = decimal.digits[kept] >= '5';
  decimal.digits.resize(kept);
  if (up) {
    std::size_t position = kept;
    while (position > 0 && decimal.digits[position - 1] == '9') {
      decimal.digits[--position] = '0';
    }
    if (position > 0) {
      ++decimal.digits[position - 1];
    } else {
      decimal.digits.insert(0, 1, '1');
      ++decimal.point;
    }
  }
  normalise(decimal);
}

/// `count` digits from `first` on; those before and after the known ones are zeros.
std::string digit_range(const Decimal& decimal, int first, int count) {
  std::string digits;
  for (int i = first; i < first + count; ++i) {
    const bool known = i >= 0 && i < static_cast<int>(decimal.digits.size());
    digits += known ? decimal.digits[static_cast<std::size_t>(i)] : '0';
  }
  return digits;
}

std::string fixed_text(const Decimal& decimal, int whole_digits, int places) {
  const int whole = std::max(decimal.point, whole_digits);
  std::string text = decimal.negative ? "-" : "";
  text += digit_range(decimal, decimal.point - whole, whole);
  if (places > 0) {
    text += '.';
    text += digit_range(decimal, decimal.point, places);
  }
  return text;
}

std::string exponent_text(int exponent, char letter, int min_digits) {
  const std::string digits = std::to_string(std::abs(exponent));
  const auto width = static_cast<std::size_t>(min_digits);
  std::string text(1, letter);
  text += exponent < 0 ? '-' : '+';
  text.append(width > digits.size() ? width - digits.size() : 0, '0');
  return text + digits;
}

std::string scientific_text(const Decimal& decimal, int places, char letter, int exponent_digits) {
  std::string text = decimal.negative ? "-" : "";
  text += digit_range(decimal, 0, 1);
  if (places > 0) {
    text += '.';
    text += digit_range(decimal, 1, places);
  }
  return text + exponent_text(decimal.digits.empty() ? 0 : decimal.point - 1, letter, exponent_digits);
}

struct Picture {
  int whole_digits = 0;
  int places = 0;
  char exponent_letter = '\0';  // none in a fixed picture
  int exponent_digits = 0;
};

Picture parse_picture(std::string_view text) {
  const auto zeros = [](std::string_view part) { return static_cast<int>(std::ranges::count(part, '0')); };
  Picture picture;
  const std::size_t letter = text.find_first_of("Ee");
  if (letter != std::string_view::npos) {
    picture.exponent_letter = text[letter];
    picture.exponent_digits = zeros(text.substr(letter));
  }
  const std::string_view mantissa = text.substr(0, letter);
  const std::size_t point = mantissa.find('.');
  picture.whole_digits = zeros(mantissa.substr(0, point));
  picture.places = point == std::string_view::npos ? 0 : zeros(mantissa.substr(point));
  return picture;
}

std::string format_decimal(Decimal decimal, std::string_view picture_text) {
  const Picture picture = parse_picture(picture_text);
  if (picture.exponent_letter != '\0') {
    round_to_digits(decimal, 1 + picture.places);
    return scientific_text(decimal, picture.places, picture.exponent_letter, picture.exponent_digits);
  }
  round_to_digits(decimal, decimal.point + picture.places);
  return fixed_text(decimal, picture.whole_digits, picture.places);
}

/// Plain where the exponent lies in [-4, plain_digits), with an exponent elsewhere.
std::string short_text(const Decimal& decimal, int plain_digits) {
  const auto count = static_cast<int>(decimal.digits.size());
  if (count > 0 && (decimal.point > plain_digits || decimal.point < -3)) {
    return scientific_text(decimal, count - 1, 'E', 2);
  }
  return fixed_text(decimal, 1, std::max(0, count - decimal.point));
}

template <std::floating_point Value>
std::optional<std::string> text_if_not_finite(Value value) {
  if (std::isnan(value)) {
    return "NaN";
  }
  if (std::isinf(value)) {
    return value < 0 ? "-Inf" : "Inf";
  }
  return std::nullopt;
}

template <std::floating_point Value>
std::string format_floating(Value value, std::string_view picture) {
  if (const auto text = text_if_not_finite(value)) {
    return *text;
  }
  return format_decimal(shortest_decimal(value), picture);
}

template <std::floating_point Value>
std::string plain_floating(Value value, int max_digits) {
  if (const auto text = text_if_not_finite(value)) {
    return *text;
  }
  Decimal decimal = shortest_decimal(value);
  if (static_cast<int>(decimal.digits.size()) > max_digits) {
    decimal = decimal_of_digits(value, max_digits);
  }
  return short_text(decimal, max_digits);
}

template <std::floating_point Value>
std::string criterion_floating(Value value) {
  if (const auto text = text_if_not_finite(value)) {
    return *text;
  }
  return short_text(shortest_decimal(value), double_digits);
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

struct LeadingNumber {
  double value = 0.0;
  std::size_t length = 0;  // bytes of the number, 0 when there is none
};

/// Where an exponent that starts at `position` ends; `position` itself when there is none.
std::size_t exponent_end(std::string_view text, std::size_t position) {
  std::size_t end = position;
  if (end < text.size() && std::string_view("eEdD").find(text[end]) != std::string_view::npos) {
    ++end;
    if (end < text.size() && (text[end] == '+' || text[end] == '-')) {
      ++end;
    }
    const std::size_t first_digit = end;
    while (end < text.size() && is_digit(text[end])) {
      ++end;
    }
    if (end > first_digit) {
      return end;
    }
  }
  return position;
}

/// What is beyond the range of a double becomes infinite or 0.
LeadingNumber read_number(std::string_view text) {
  LeadingNumber number;
  const auto read = fast_float::from_chars(text.data(), text.data() + text.size(), number.value);
  if (read.ec == std::errc::invalid_argument) {
    return {};
  }
  number.length = static_cast<std::size_t>(read.ptr - text.data());
  return number;
}

/// The number that `text` begins with: a sign, digits with at most one point, an exponent.
LeadingNumber leading_number(std::string_view text) {
  const std::size_t sign = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  if (sign == text.size() || (!is_digit(text[sign]) && text[sign] != '.')) {
    return {};  // fast_float::from_chars would take "inf" and "nan"
  }
  const std::size_t skipped = text[0] == '+' ? 1 : 0;
  text.remove_prefix(skipped);
  LeadingNumber number = read_number(text);
  const std::size_t end = exponent_end(text, number.length);
  if (number.length > 0 && end > number.length) {
    std::string with_e(text.substr(0, end));  // a Fortran exponent: the letter is the only difference
    with_e[number.length] = 'e';
    number = read_number(with_e);
  }
  if (number.length > 0) {
    number.length += skipped;
  }
  return number;
}

}  // namespace

std::string format_number(double value, std::string_view picture) { return format_floating(value, picture); }

std::string format_number(float value, std::string_view picture) { return format_floating(value, picture); }

std::string format_number(std::int64_t value, std::string_view picture) {
  return format_decimal(decimal_of_integer(value), picture);
}

std::string plain_text(double value) { return plain_floating(value, double_digits); }

std::string plain_text(float value) { return plain_floating(value, single_digits); }

std::string plain_text(std::int64_t value) { return std::to_string(value); }

std::string criterion_text(double value) { return criterion_floating(value); }

std::string criterion_text(float value) { return criterion_floating(value); }

double decimal_of_single(float value) {
  if (!std::isfinite(value)) {
    return value;
  }
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  double decimal = 0.0;
  fast_float::from_chars(buffer.data(), written.ptr, decimal);
  return decimal;
}

double numeric_value(std::string_view text) {
  std::string_view ignored;
  return numeric_value(text, ignored);
}

double numeric_value(std::string_view text, std::string_view& rest) {
  rest = text;
  // What is_numeric leaves out, too: a form feed before a number is in some printed tables.
  const auto first = static_cast<std::size_t>(trimmed(text).data() - text.data());
  const LeadingNumber number = leading_number(text.substr(first));
  if (number.length > 0) {
    rest = text.substr(first + number.length);
  }
  return number.value;
}

bool is_numeric(std::string_view text) {
  const std::string_view number = trimmed(text);
  return !number.empty() && leading_number(number).length == number.size();
}
