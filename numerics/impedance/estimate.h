// estimate.h: a number that was derived from measured ones.
#pragma once
#include <cmath>
#include <limits>

namespace numerics::impedance {

inline constexpr double not_known = std::numeric_limits<double>::quiet_NaN();

/// A value and its standard error. Either may be unknown: a value where there is none, an error where those
/// of the measurement aren't known.
struct Estimate {
  double value = not_known;
  double error = not_known;

  [[nodiscard]] bool has_value() const { return !std::isnan(value); }
  [[nodiscard]] bool has_error() const { return !std::isnan(error); }
};

}  // namespace numerics::impedance
