#include "database/line_names.h"

#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_database {

namespace {

bool ends_with_digit(std::string_view text) {
  return !text.empty() && text.back() >= '0' && text.back() <= '9';
}

}  // namespace

std::string line_fault(std::string_view text, LineDirection direction, LineName& name) {
  const std::string typed = upper_case(trimmed(text));
  double value = 0.0;
  char letter = ' ';
  if (ends_with_digit(typed)) {
    if (!is_numeric(typed)) {
      return "The supplied Line number is not valid";
    }
    value = numeric_value(typed);
    const bool along_east = direction == LineDirection::local_east;
    letter = value < 0.0 ? (along_east ? 'W' : 'S') : (along_east ? 'E' : 'N');
  } else {
    letter = typed.empty() ? ' ' : typed.back();
    if (std::string_view("NSEW").find(letter) == std::string_view::npos) {
      return "The supplied Line number suffix is not valid";
    }
    const std::string_view digits = std::string_view(typed).substr(0, typed.size() - 1);
    if (!is_numeric(digits) || !std::isfinite(numeric_value(digits))) {
      return "The supplied Line number value is not valid";
    }
    value = numeric_value(digits);
    if (letter == 'W' || letter == 'S') {
      value = -value;
      if (value > 0.0) {  // "-200S" is on the other side
        letter = letter == 'S' ? 'N' : 'E';
        value = -value;
      }
    }
  }
  name = {format_number(std::abs(value), "0") + letter, value};
  return {};
}

LineDirection line_direction(std::string_view line) {
  const std::size_t place = line.find_last_of("NSEWnsew");
  const bool north =
      place != std::string_view::npos && std::string_view("NSns").find(line[place]) != std::string_view::npos;
  return north ? LineDirection::local_north : LineDirection::local_east;
}

}  // namespace Module_database
