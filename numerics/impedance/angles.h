// angles.h: ranges of angles, degrees, and turns of axes.
#pragma once
#include <cmath>

#include "numerics/constants.h"

namespace numerics::impedance {

/// The same angle within -period/2 < angle <= period/2: 360 for a direction, 180 for an axis, 90 for a
/// strike.
inline double within_period(double angle, double period) {
  const double remainder = std::remainder(angle, period);  // -period/2 to period/2
  return remainder <= -0.5 * period ? remainder + period : remainder;
}

struct Turn {
  double cosine = 1.0;
  double sine = 0.0;
};

/// Exact at multiples of 90 degrees, so that elements only change places there.
inline Turn turn_by(double degrees) {
  const Turn turn{std::cos(degrees * radians_per_degree), std::sin(degrees * radians_per_degree)};
  return std::remainder(degrees, 90.0) == 0.0 ? Turn{std::round(turn.cosine), std::round(turn.sine)} : turn;
}

}  // namespace numerics::impedance
