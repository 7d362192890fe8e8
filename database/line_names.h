// line_names.h: the normal form of a line's name: a whole number with the letter of its direction.
#pragma once
#include <string>
#include <string_view>

namespace Module_database {

enum class LineDirection {
  local_east,   // "Line is Local E, Station is Local N"
  local_north,  // "Line is Local N, Station is Local E"
};

struct LineName {
  std::string text;     // "200W"
  double number = 0.0;  // as typed, negative for W and S: -200
};

/// Brings a line's text into its normal form: "-200" becomes "200W" or, along local north, "200S".
/// @return what is wrong with the text, as a message words it, and `name` is as before; empty if nothing is
std::string line_fault(std::string_view text, LineDirection direction, LineName& name);

/// The direction of a line by its letter; local_east where it has none.
LineDirection line_direction(std::string_view line);

}  // namespace Module_database
