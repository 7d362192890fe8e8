// value_fields.h: the twelve values of a coordinate system as texts.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "platform/vexutil32/coordinate_transforms.h"

namespace Module_projections {

using WholeNumber = std::int32_t vexutil32::CoordinateSystemValues::*;
using Number = double vexutil32::CoordinateSystemValues::*;
using ValueField = std::variant<WholeNumber, Number>;

/// The shortest text that reads back as exactly the same value.
std::string field_text(const vexutil32::CoordinateSystemValues& values, ValueField field);

/// Takes a text over into a value; an empty one is 0.
/// @return false, with the value as before, if the text is no number or a whole number is needed and it isn't
/// one
bool read_field(std::string_view text, ValueField field, vexutil32::CoordinateSystemValues& values);

}  // namespace Module_projections
