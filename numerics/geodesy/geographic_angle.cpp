#include "numerics/geodesy/geographic_angle.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace numerics::geodesy {

namespace {

constexpr double largest_latitude = 90.0;
constexpr double largest_longitude = 360.0;  // some files count eastwards all around

// Degree, minute and second signs as UTF-8, the degree sign also as the one byte of older code pages.
constexpr std::string_view part_signs[] = {"\xC2\xB0", "\xE2\x80\xB2", "\xE2\x80\xB3", "\xB0", "'", "\"",
                                           ":"};

std::string with_blanks_between_parts(std::string_view text) {
  std::string parts(text);
  for (const std::string_view sign : part_signs) {
    for (std::size_t place = parts.find(sign); place != std::string::npos; place = parts.find(sign, place)) {
      parts.replace(place, sign.size(), " ");
    }
  }
  return parts;
}

std::vector<std::string_view> blank_separated(std::string_view text) {
  std::vector<std::string_view> parts;
  while (!(text = trimmed(text)).empty()) {
    const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return parts;
}

// Takes the letter of a hemisphere from either end: +1, -1, or 0 without one. None if it belongs to the other
// kind.
std::optional<int> take_letter(std::string_view& text, GeographicAngle kind) {
  const std::string_view positive = kind == GeographicAngle::latitude ? "Nn" : "Ee";
  const std::string_view negative = kind == GeographicAngle::latitude ? "Ss" : "Ww";
  constexpr std::string_view letters = "NnSsEeWw";
  const bool behind = letters.find(text.back()) != std::string_view::npos;
  if (!behind && letters.find(text.front()) == std::string_view::npos) {
    return 0;
  }
  const char letter = behind ? text.back() : text.front();
  behind ? text.remove_suffix(1) : text.remove_prefix(1);
  text = trimmed(text);
  if (positive.find(letter) != std::string_view::npos) {
    return 1;
  }
  return negative.find(letter) != std::string_view::npos ? std::optional<int>(-1) : std::nullopt;
}

// Magnitude in degrees of one to three parts without a sign; only the last may have a fraction.
std::optional<double> magnitude(const std::vector<std::string_view>& parts) {
  constexpr std::size_t max_parts = 3;
  constexpr double sixty = 60.0;  // itself allowed: programs write 59.996 seconds as 60.00
  if (parts.empty() || parts.size() > max_parts) {
    return std::nullopt;
  }
  double degrees = 0.0;
  double unit = 1.0;
  for (std::size_t index = 0; index < parts.size(); ++index) {
    const std::string_view part = parts[index];
    const double value = numeric_value(part);
    const bool is_last = index + 1 == parts.size();
    if (!is_numeric(part) || part.front() == '-' || part.front() == '+' || !std::isfinite(value) ||
        (index > 0 && value > sixty) || (!is_last && value != std::floor(value))) {
      return std::nullopt;
    }
    degrees += value / unit;
    unit *= sixty;
  }
  return degrees;
}

}  // namespace

std::optional<double> read_geographic_angle(std::string_view text, GeographicAngle kind) {
  text = trimmed(text);
  if (text.empty()) {
    return std::nullopt;
  }
  const std::optional<int> letter = take_letter(text, kind);
  if (!letter || text.empty()) {
    return std::nullopt;
  }
  const bool has_sign = text.front() == '-' || text.front() == '+';
  if (has_sign && *letter != 0) {
    return std::nullopt;  // "-33:30 S" may mean either
  }
  const bool negative = *letter < 0 || text.front() == '-';
  const std::string parts = with_blanks_between_parts(has_sign ? text.substr(1) : text);
  const std::optional<double> degrees = magnitude(blank_separated(parts));
  const double largest = kind == GeographicAngle::latitude ? largest_latitude : largest_longitude;
  if (!degrees || *degrees > largest) {
    return std::nullopt;
  }
  return negative ? -*degrees : *degrees;
}

}  // namespace numerics::geodesy
