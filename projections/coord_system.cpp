#include "projections/coord_system.h"

#include "core/debug_log.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"

namespace Module_projections {

namespace {

using numerics::geodesy::CoordinateSystemValues;

constexpr double max_meridian = 360.0;    // degrees
constexpr double max_parallel = 89.0;     // degrees; cones at a pole are refused
constexpr double max_zone_width = 360.0;  // degrees

bool is_conic(std::int32_t projection) {
  return projection >= numerics::geodesy::projection_lambert_conformal &&
         projection <= numerics::geodesy::projection_equidistant_conic;
}

bool has_zones(std::int32_t projection) {
  return projection == numerics::geodesy::projection_australian_map_grid ||
         projection == numerics::geodesy::projection_utm;
}

bool within(double value, double limit) { return value >= -limit && value <= limit; }  // false for a NaN

std::string conic_fault(const CoordinateSystemValues& values) {
  if (!within(values.origin_longitude, max_meridian)) {
    return "The Central meridian is invalid";
  }
  if (!within(values.origin_latitude, max_parallel)) {
    return "The Central latitude is invalid";
  }
  if (!within(values.standard_parallel_1, max_parallel)) {
    return "Standard latitude 1 is invalid";
  }
  if (!within(values.standard_parallel_2, max_parallel)) {
    return "Standard latitude 2 is invalid";
  }
  if (values.standard_parallel_1 == values.standard_parallel_2) {
    return "Standard latitudes 1 and 2 must be distinct";
  }
  return {};
}

}  // namespace

std::string name_part(std::string_view full_name) {
  return std::string(trimmed(full_name.substr(0, full_name.find('|'))));
}

std::string description_part(std::string_view full_name) {
  const std::size_t bar = full_name.find('|');
  return bar == std::string_view::npos ? std::string() : std::string(trimmed(full_name.substr(bar + 1)));
}

std::string joined_name(std::string_view name, std::string_view description) {
  const std::string proper = name_part(name);
  if (proper.empty()) {
    return {};
  }
  std::string joined = proper;
  for (const std::string& part : {description_part(name), std::string(trimmed(description))}) {
    joined += (part.empty() ? "" : " | ") + part;
  }
  return joined;
}

bool compare_coordinate_system_values(const CoordSystem& a, const CoordSystem& b) {
  Module_debug::write_debug(1, "compare_coordinate_system_values ");
  return a.values() == b.values();
}

std::string coordinate_system_fault(const CoordinateSystemValues& values) {
  if (values.projection < numerics::geodesy::projection_geographic ||
      values.projection > numerics::geodesy::projection_epsg_3857) {
    return "The projection is undefined";
  }
  if (is_conic(values.projection)) {
    return conic_fault(values);
  }
  if (has_zones(values.projection) && !(values.zone_width > 0.0 && values.zone_width <= max_zone_width)) {
    return "The zone width value is invalid";
  }
  return {};
}

int decode_coordinate_system(CoordSystem& definition) {
  Module_debug::write_debug(1, "decode_coordinate_system ");
  return trap_errors("An error occurred while adding the decoding the coordinate system ", [&] {
    definition.status = 0;
    if (const std::string fault = coordinate_system_fault(definition); !fault.empty()) {
      user_interface().show_message(fault);
      return -1;
    }
    definition.transform_parameters = numerics::geodesy::crdprm(definition);
    return 0;
  });
}

}  // namespace Module_projections
