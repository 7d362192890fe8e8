#include "numerics/geodesy/best_line.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace numerics::geodesy {

double BestLine::along(const MapPlace& place) const {
  return (place.easting - mean_easting) * direction_east + (place.northing - mean_northing) * direction_north;
}

double BestLine::beside(const MapPlace& place) const {
  return (place.easting - mean_easting) * direction_north - (place.northing - mean_northing) * direction_east;
}

std::optional<BestLine> best_line(std::span<const MapPlace> places) {
  std::vector<MapPlace> finite;
  std::ranges::copy_if(places, std::back_inserter(finite), [](const MapPlace& place) {
    return std::isfinite(place.easting) && std::isfinite(place.northing);
  });
  const bool differ = std::ranges::any_of(finite, [&](const MapPlace& place) {
    return place.easting != finite.front().easting || place.northing != finite.front().northing;
  });
  if (!differ) {
    return std::nullopt;
  }
  BestLine line;
  const auto count = static_cast<double>(finite.size());
  for (const MapPlace& place : finite) {
    line.mean_easting += place.easting / count;
    line.mean_northing += place.northing / count;
  }
  double ee = 0.0;
  double en = 0.0;
  double nn = 0.0;
  for (const MapPlace& place : finite) {
    const double east = place.easting - line.mean_easting;
    const double north = place.northing - line.mean_northing;
    ee += east * east;
    en += east * north;
    nn += north * north;
  }
  const double angle = 0.5 * std::atan2(2.0 * en, ee - nn);  // from east, anticlockwise
  line.direction_east = std::cos(angle);
  line.direction_north = std::sin(angle);
  if (line.along(finite.back()) < line.along(finite.front())) {
    line.direction_east = -line.direction_east;
    line.direction_north = -line.direction_north;
  }
  const auto by_distance = [&](const MapPlace& a, const MapPlace& b) {
    return line.along(a) < line.along(b);
  };
  const auto [first, last] = std::ranges::minmax_element(finite, by_distance);
  line.length = line.along(*last) - line.along(*first);
  double squares = 0.0;
  for (const MapPlace& place : finite) {
    squares += line.beside(place) * line.beside(place);
  }
  line.rms_distance = std::sqrt(squares / count);
  return line;
}

}  // namespace numerics::geodesy
