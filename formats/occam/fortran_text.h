// fortran_text.h: numbers as the public inversion program writes them.
#pragma once
#include <charconv>
#include <cstddef>
#include <string>

namespace Module_occam {

/// A number in a format and precision of std::to_chars, with blanks before it up to a width; the same
/// whatever the locale.
std::string written_number(double value, std::chars_format format, int precision, std::size_t width);

/// Fortran's Gw.d: plain with four blanks behind where 0.1 <= |value| < 10^d, else as 0.12345E-02.
std::string general_number(double value, int digits, std::size_t width);

}  // namespace Module_occam
