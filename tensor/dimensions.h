// dimensions.h: how many dimensions the ground has at each station and period, as cells of a grid.
#pragma once
#include <array>
#include <cstddef>
#include <vector>

#include "tensor/line_strike.h"

namespace Module_tensor {

/// A point of a station and the periods that its cell covers: half way to its neighbours in logarithm, but
/// not across a gap of more than one and a half of the usual spacings.
struct DimensionCell {
  double frequency = 0.0;        // Hz
  double shortest_period = 0.0;  // s
  double longest_period = 0.0;
  numerics::impedance::Dimensionality dimension = numerics::impedance::Dimensionality::one;
  double skew = 0.0;         // beta, degrees
  double ellipticity = 0.0;  //
};

/// The points of a station that have a phase tensor, ascending in frequency.
std::vector<DimensionCell> dimension_cells(const StrikeStation& station,
                                           const numerics::impedance::DimensionalityLimits& limits);

/// How many cells of a band are one-, two- and three-dimensional.
std::array<std::size_t, 3> dimension_counts(const std::vector<std::vector<DimensionCell>>& cells,
                                            const FrequencyBand& band);

}  // namespace Module_tensor
