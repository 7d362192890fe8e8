#include "samples/field_conditions.h"

#include <cmath>

#include "numerics/constants.h"
#include "samples/random_numbers.h"

namespace Module_samples {

namespace {

constexpr double map_east_origin = 500000.0;    // m
constexpr double map_north_origin = 6200000.0;  // m

// On WGS 84, where the map's origin lies in zone 54 S.
constexpr double origin_latitude = -34.3413027;  // degrees
constexpr double origin_longitude = 141.0;       // degrees

}  // namespace

double noise_level(double frequency) {
  constexpr double floor = 0.015;
  constexpr double dead_band_extra = 0.05;
  constexpr double dead_band_centre = 2.0;  // Hz
  constexpr double dead_band_decades = 0.35;
  const double distance = std::log10(frequency / dead_band_centre) / dead_band_decades;
  return floor + dead_band_extra * std::exp(-distance * distance);
}

// North and east of the origin by the radii of curvature of WGS 84 there (Snyder 1987, Map Projections: A
// Working Manual, 4-18 and 4-20), which is right to a centimetre over a kilometre and to a metre over ten.
void locate(double north, double east, std::uint64_t seed, std::uint32_t line_number, double station,
            EdiSection& section) {
  constexpr double equatorial_radius = 6378137.0;  // m
  constexpr double eccentricity_squared = 0.00669437999014;
  constexpr double largest_error = 0.7;  // m, in each direction
  RandomNumbers random{static_cast<std::uint32_t>(seed), static_cast<std::uint32_t>(seed >> 32U), line_number,
                       static_cast<std::uint32_t>(std::lround(station))};
  const double north_error = largest_error * (2.0 * random.uniform() - 1.0);
  const double east_error = largest_error * (2.0 * random.uniform() - 1.0);
  const double latitude = origin_latitude * numerics::radians_per_degree;
  const double flattened = 1.0 - eccentricity_squared * std::sin(latitude) * std::sin(latitude);
  const double prime_vertical = equatorial_radius / std::sqrt(flattened);
  const double meridian = prime_vertical * (1.0 - eccentricity_squared) / flattened;
  section.north = map_north_origin + north;
  section.east = map_east_origin + east;
  section.latitude = origin_latitude + (north + north_error) / meridian * numerics::degrees_per_radian;
  section.longitude = origin_longitude + (east + east_error) / (prime_vertical * std::cos(latitude)) *
                                             numerics::degrees_per_radian;
}

}  // namespace Module_samples
