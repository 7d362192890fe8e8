// definitions.h: a few coordinate systems for tests.
#pragma once
#include <string>

#include "projections/coord_system.h"

inline Module_projections::CoordSystem zone_definition(const std::string& name, int zone) {
  Module_projections::CoordSystem definition;
  definition.name = name;
  definition.projection = numerics::geodesy::projection_utm;
  definition.datum = 4283;
  definition.hemisphere = numerics::geodesy::hemisphere_south;
  definition.zone_width = 6.0;
  definition.zone_number = zone;
  return definition;
}

inline Module_projections::CoordSystem lambert_definition(const std::string& name) {
  Module_projections::CoordSystem definition;
  definition.name = name;
  definition.projection = numerics::geodesy::projection_lambert_conformal;
  definition.datum = 4283;
  definition.origin_longitude = 145.1;
  definition.origin_latitude = -37.0;
  definition.standard_parallel_1 = -36.0;
  definition.standard_parallel_2 = -38.1234567890123;
  definition.false_easting = 2500000.0;
  definition.false_northing = 0.1 + 0.2;  // needs all its digits
  return definition;
}
