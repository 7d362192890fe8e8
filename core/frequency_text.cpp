#include "core/frequency_text.h"

#include <cmath>
#include <utility>

#include "core/number_text.h"

namespace {

std::string with_decimals(float value, int decimals) {
  return format_number(value,
                       decimals > 0 ? "0." + std::string(static_cast<std::size_t>(decimals), '0') : "0");
}

}  // namespace

std::string frequency_text(float frequency, int least_decimals, double parts, std::size_t width) {
  const double value = decimal_of_single(frequency);
  const double tolerance = std::abs(value) / parts;
  int decimals = least_decimals;
  std::string text = with_decimals(frequency, decimals);
  while (text.size() > width && decimals > 0) {
    text = with_decimals(frequency, --decimals);
  }
  while (std::abs(numeric_value(text) - value) > tolerance) {  // never for what is no number
    std::string longer = with_decimals(frequency, ++decimals);
    if (longer.size() > width) {
      break;
    }
    text = std::move(longer);
  }
  return text;
}
