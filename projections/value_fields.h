// value_fields.h: the twelve values of a coordinate system as texts.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

using WholeNumber = std::int32_t numerics::geodesy::CoordinateSystemValues::*;
using Number = double numerics::geodesy::CoordinateSystemValues::*;
using ValueField = std::variant<WholeNumber, Number>;

/// One of the twelve values and what it is called.
struct NamedField {
  std::string_view stored_name;   // in the settings store
  std::string_view column_title;  // in a CSV file
  ValueField field;
};
inline constexpr std::array<NamedField, 12> named_fields{
    {{"datum", "Datum", &numerics::geodesy::CoordinateSystemValues::datum},
     {"projection", "projection", &numerics::geodesy::CoordinateSystemValues::projection},
     {"hemisphere", "hemisphere", &numerics::geodesy::CoordinateSystemValues::hemisphere},
     {"Origin_Longitude", "Origin_Longitude", &numerics::geodesy::CoordinateSystemValues::origin_longitude},
     {"Origin_Latitude", "Origin_Latitude", &numerics::geodesy::CoordinateSystemValues::origin_latitude},
     {"Standard_parallel_1", "Standard_parallel_1",
      &numerics::geodesy::CoordinateSystemValues::standard_parallel_1},
     {"Standard_parallel_2", "Standard_parallel_2",
      &numerics::geodesy::CoordinateSystemValues::standard_parallel_2},
     {"false_easting", "False_easting", &numerics::geodesy::CoordinateSystemValues::false_easting},
     {"false_northing", "False_northing", &numerics::geodesy::CoordinateSystemValues::false_northing},
     {"scale_factor", "Scale_factor", &numerics::geodesy::CoordinateSystemValues::scale_factor},
     {"zone_width", "Zone_width", &numerics::geodesy::CoordinateSystemValues::zone_width},
     {"zone_number", "Zone_number", &numerics::geodesy::CoordinateSystemValues::zone_number}}};

/// The shortest text that reads back as exactly the same value.
std::string field_text(const numerics::geodesy::CoordinateSystemValues& values, ValueField field);

/// Reads a text into a value; an empty one is 0.
/// @return false, with the value as before, if the text is not a number, or not a whole one where one is
/// needed
bool read_field(std::string_view text, ValueField field, numerics::geodesy::CoordinateSystemValues& values);

}  // namespace Module_projections
