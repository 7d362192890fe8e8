// coord_system.h: one named map coordinate system; testing it and computing its transform parameters.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

/// A definition: the twelve values (angles in degrees, lengths in metres) under a name.
struct CoordSystem : numerics::geodesy::CoordinateSystemValues {
  std::int32_t status =
      0;             // 0 from decode_coordinate_system on; for a decoder that reports more than a message
  std::string name;  // before a "|" the name proper, after it a description
  numerics::geodesy::TransformParameters transform_parameters{};  // all zeros until decoded

  [[nodiscard]] const numerics::geodesy::CoordinateSystemValues& values() const { return *this; }
  void set_values(const numerics::geodesy::CoordinateSystemValues& values) {
    CoordinateSystemValues::operator=(values);
  }
};

/// The name proper and the description of a definition's full name, without blanks at their ends.
std::string name_part(std::string_view full_name);
std::string description_part(std::string_view full_name);

/// The full name of both, "Name | Description"; the name alone if there is no description, empty without a
/// name. Text after a "|" in the name comes before the description.
std::string joined_name(std::string_view name, std::string_view description);

/// True if the twelve values are exactly equal; the names don't count.
bool compare_coordinate_system_values(const CoordSystem& a, const CoordSystem& b);

/// The message for the first fault of the values; empty if there is none.
std::string coordinate_system_fault(const numerics::geodesy::CoordinateSystemValues& values);

/// Tests a definition and computes its transform parameters.
/// @return 0, or -1 after a message; the parameters are then as before
[[nodiscard]] int decode_coordinate_system(CoordSystem& definition);

}  // namespace Module_projections
