// station_positions.h: where the stations of a line stand in an inversion.
#pragma once
#include <span>
#include <vector>

#include "projections/line_distances.h"

namespace Module_occam {

struct PositionedStation {
  double station = 0.0;
  double position = 0.0;  // m along the line
  int place_in_line = 0;  // from 1, by station numbers
};

/// Stations at their numbers.
std::vector<PositionedStation> positions_by_number(std::span<const double> stations);

/// Stations at their distances along the line, to a tenth of a metre as a data file has them, in this order;
/// those without a distance are left out: they have no readings.
std::vector<PositionedStation> positions_by_distance(std::span<const double> stations,
                                                     const Module_projections::LineDistances& distances);

}  // namespace Module_occam
