// earth_of.h: apparent resistivity and phase of an impedance that carries its derivatives.
#pragma once
#include "numerics/constants.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/propagated.h"

namespace numerics::impedance {

inline constexpr double resistivity_factor = 0.2;  // mu0 / (2 pi) times the square of the field unit

/// rho_a = 0.2 |Z|^2 / f and arg Z, as apparent_resistivity.h has them, with errors to the first order.
/// @param length      |Z|, mV/km/nT
/// @param angle       arg Z, radians
/// @param frequency   Hz, > 0
/// @param covariance  of the elements that |Z| and arg Z depend on, (mV/km/nT)^2
/// @return ohm-m; degrees, -180 < phase <= 180
template <std::size_t elements>
ApparentEarth earth_of(const Propagated<2 * elements>& length, const Propagated<2 * elements>& angle,
                       double frequency, const std::array<PartCovariance, elements>& covariance) {
  ApparentEarth earth{estimate(resistivity_factor / frequency * (length * length), covariance),
                      estimate(degrees_per_radian * angle, covariance)};
  earth.phase.value = within_period(earth.phase.value, 360.0);
  return earth;
}

/// The same of Z itself.
template <std::size_t elements>
ApparentEarth earth_of(const ComplexOf<Propagated<2 * elements>>& impedance, double frequency,
                       const std::array<PartCovariance, elements>& covariance) {
  return earth_of(length(impedance), atan2(impedance.imaginary, impedance.real), frequency, covariance);
}

}  // namespace numerics::impedance
