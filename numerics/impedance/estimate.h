// estimate.h: what is known of measured numbers, and of those that are derived from them.
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

/// Apparent resistivity, ohm-m, and phase, degrees.
struct ApparentEarth {
  Estimate resistivity;
  Estimate phase;
};

/// How far the real and the imaginary part of an element are known: variances and covariance. The two parts
/// of one estimate are equally known and independent; a resistivity and a phase with errors of their own make
/// an ellipse across the complex plane. NaN: nothing is known.
struct PartCovariance {
  double real = not_known;       // (mV/km/nT)^2; of a tipper, dimensionless
  double imaginary = not_known;  // likewise
  double cross = 0.0;            // likewise

  [[nodiscard]] bool is_known() const { return !std::isnan(real) && !std::isnan(imaginary); }
};

}  // namespace numerics::impedance
