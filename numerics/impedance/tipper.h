// tipper.h: the vertical magnetic field over the horizontal one, and its induction arrows.
//
// Hz = Tx Hx + Ty Hy, z down. Parkinson (1959), GJRAS 2, 1-14; Wiese (1962), Geofis. Pura Appl. 52, 83-103.
// Conventions as in tensor.h.
#pragma once
#include "numerics/impedance/tensor.h"

namespace numerics::impedance {

struct Tipper {
  std::complex<double> x;
  std::complex<double> y;
  PartCovariance covariance_x;  // dimensionless
  PartCovariance covariance_y;
};

/// T' = T R^T, in axes turned clockwise by so many degrees.
Tipper rotated(const Tipper& tipper, double degrees);

enum class ArrowConvention : std::uint8_t {
  parkinson,  // the real arrow points to conductors
  wiese       // away from them
};

struct Arrow {
  double north = 0.0;
  double east = 0.0;
  Estimate length;
  Estimate azimuth;  // degrees, -180 < azimuth <= 180
};

/// (Re Tx, Re Ty), turned round for Parkinson. Its azimuth counts from the x axis of the tipper.
Arrow real_arrow(const Tipper& tipper, ArrowConvention convention);

/// Programs disagree on it: as it is, +(Im Tx, Im Ty), by default, in either convention of the real arrow.
Arrow imaginary_arrow(const Tipper& tipper, bool reversed = false);

/// sqrt(|Tx|^2 + |Ty|^2).
Estimate tipper_magnitude(const Tipper& tipper);

/// A shorter real arrow has no direction.
inline constexpr double least_arrow = 0.05;

/// The strike across the real arrow, degrees, -90 < strike <= 90; no value below `least_arrow`.
Estimate tipper_strike(const Tipper& tipper);

}  // namespace numerics::impedance
