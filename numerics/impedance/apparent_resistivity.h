// apparent_resistivity.h: from an impedance to apparent resistivity and phase.
//
// Conventions: impedance Z = E/B in field units, mV/km/nT, with the time factor exp(+i omega t), so that a
// half-space has a phase of +45 degrees; frequency Hz.
#pragma once
#include <complex>

namespace numerics::impedance {

/// Apparent resistivity 0.2 |Z|^2 / f, ohm-m. Cagniard (1953), Geophysics 18, 605-635.
double apparent_resistivity(std::complex<double> impedance, double frequency);

/// Phase of an impedance, degrees, -180 to 180.
double phase_degrees(std::complex<double> impedance);

}  // namespace numerics::impedance
