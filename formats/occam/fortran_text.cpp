#include "formats/occam/fortran_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace Module_occam {

std::string written_number(double value, std::chars_format format, int precision, std::size_t width) {
  std::array<char, 400> text{};  // the largest number in fixed form has 309 digits
  const std::to_chars_result end =
      std::to_chars(text.data(), text.data() + text.size(), value, format, precision);
  const std::string result(text.data(), end.ptr);
  return result.size() < width ? std::string(width - result.size(), ' ') + result : result;
}

std::string general_number(double value, int digits, std::size_t width) {
  constexpr std::size_t blanks = 4;
  if (value == 0.0 || !std::isfinite(value)) {
    return written_number(value, std::chars_format::fixed, digits - 1, width - blanks) + "    ";
  }
  int exponent = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;  // of 0.12345E+02
  double fraction = value / std::pow(10.0, exponent);
  if (std::abs(fraction) + 0.5 * std::pow(10.0, -digits) >= 1.0) {  // it would be rounded up to 1
    ++exponent;
    fraction /= 10.0;
  }
  if (exponent >= 0 && exponent <= digits) {
    const bool is_whole = exponent == digits;  // its point is written all the same
    return written_number(value, std::chars_format::fixed, digits - exponent,
                          width - blanks - (is_whole ? 1 : 0)) +
           (is_whole ? "." : "") + "    ";
  }
  const std::string power = std::to_string(std::abs(exponent));
  return written_number(fraction, std::chars_format::fixed, digits, width - blanks) +
         (exponent < 0 ? "E-" : "E+") + (power.size() < 2 ? "0" : "") + power;
}

}  // namespace Module_occam
