// value_fields.h: the twelve values of a coordinate system as texts.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

using WholeNumber = std::int32_t vexutil32::CoordinateSystemValues::*;
using Number = double vexutil32::CoordinateSystemValues::*;
using ValueField = std::variant<WholeNumber, Number>;

/// One of the twelve values and what it is called.
struct NamedField {
  std::string_view stored_name;   // in the settings store
  std::string_view column_title;  // in a CSV file
  ValueField field;
};
inline constexpr std::array<NamedField, 12> named_fields{
    {{"datum", "Datum", &vexutil32::CoordinateSystemValues::datum},
     {"projection", "projection", &vexutil32::CoordinateSystemValues::projection},
     {"hemisphere", "hemisphere", &vexutil32::CoordinateSystemValues::hemisphere},
     {"Origin_Longitude", "Origin_Longitude", &vexutil32::CoordinateSystemValues::origin_longitude},
     {"Origin_Latitude", "Origin_Latitude", &vexutil32::CoordinateSystemValues::origin_latitude},
     {"Standard_parallel_1", "Standard_parallel_1", &vexutil32::CoordinateSystemValues::standard_parallel_1},
     {"Standard_parallel_2", "Standard_parallel_2", &vexutil32::CoordinateSystemValues::standard_parallel_2},
     {"false_easting", "False_easting", &vexutil32::CoordinateSystemValues::false_easting},
     {"false_northing", "False_northing", &vexutil32::CoordinateSystemValues::false_northing},
     {"scale_factor", "Scale_factor", &vexutil32::CoordinateSystemValues::scale_factor},
     {"zone_width", "Zone_width", &vexutil32::CoordinateSystemValues::zone_width},
     {"zone_number", "Zone_number", &vexutil32::CoordinateSystemValues::zone_number}}};

/// The shortest text that reads back as exactly the same value.
std::string field_text(const vexutil32::CoordinateSystemValues& values, ValueField field);

/// Takes a text over into a value; an empty one is 0.
/// @return false, with the value as before, if the text is no number or a whole number is needed and it isn't
/// one
bool read_field(std::string_view text, ValueField field, vexutil32::CoordinateSystemValues& values);

}  // namespace Module_projections
