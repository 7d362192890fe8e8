// number_text.h: numbers as text and text as numbers, the same whatever the locale.
//
// Users know a 32-bit value by its shortest decimal (0.1, not 0.100000001490116); every procedure here that
// takes a float works on that decimal.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

/// A number in one of the pictures "0", "00", "0.0" ... "0.000000", "0.00000E+0", "0.0000e+00".
///
/// Rounds half away from zero on the value's plain decimal text: 2.5 gives "3", 0.125 with "0.00" gives
/// "0.13", 1.005 gives "1.01". Never writes a minus sign before a zero. Each picture may have any
/// number of places. In the two exponent pictures the number of zeros after the sign is the minimum number of
/// exponent digits. Values that aren't finite give "NaN", "Inf" and "-Inf".
std::string format_number(double value, std::string_view picture);
std::string format_number(float value, std::string_view picture);
std::string format_number(std::int64_t value, std::string_view picture);
inline std::string format_number(int value, std::string_view picture) {
  return format_number(std::int64_t{value}, picture);
}

/// The shortest form that one would write by hand: at most 7 significant digits for 32-bit, 15 for 64-bit
/// values; "1E+20" and "1E-10" where the plain form would be longer than the digits justify; never "-0".
std::string plain_text(double value);
std::string plain_text(float value);
std::string plain_text(std::int64_t value);
inline std::string plain_text(int value) { return plain_text(std::int64_t{value}); }

/// The shortest decimal that reads back as exactly the same number, for use in a search criterion.
std::string criterion_text(double value);
std::string criterion_text(float value);

/// The double that is written like the float: 33.3F gives 33.3, not 33.29999923706055. NaN and infinities
/// pass through.
double decimal_of_single(float value);

/// The leading number of the text, 0 if there is none. Leading blanks and a plus sign are skipped; an
/// exponent may be written with E, e, D or d. "200W" is 200, "1e" is 1, "12.5.1" is 12.5. Too large a number
/// gives an infinity.
double numeric_value(std::string_view text);

/// The same, and the text after the number: "12.4v" is 12.4 and "v". Without a number `rest` is the whole
/// text.
double numeric_value(std::string_view text, std::string_view& rest);

/// True if the whole text, but for blanks around it, is one decimal number.
bool is_numeric(std::string_view text);
