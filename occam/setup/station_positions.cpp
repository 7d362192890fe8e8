#include "occam/setup/station_positions.h"

#include <algorithm>
#include <cmath>

namespace Module_occam {

std::vector<PositionedStation> positions_by_number(std::span<const double> stations) {
  std::vector<PositionedStation> positioned;
  for (const double station : stations) {
    positioned.push_back({station, station, static_cast<int>(positioned.size()) + 1});
  }
  return positioned;
}

std::vector<PositionedStation> positions_by_distance(std::span<const double> stations,
                                                     const Module_projections::LineDistances& distances) {
  constexpr double parts = 10.0;  // of a metre
  std::vector<PositionedStation> positioned;
  int place = 0;
  for (const double station : stations) {
    ++place;
    if (const auto distance = distances.at(station)) {
      positioned.push_back({station, std::round(parts * *distance) / parts, place});
    }
  }
  std::ranges::stable_sort(positioned, {}, &PositionedStation::position);
  return positioned;
}

}  // namespace Module_occam
