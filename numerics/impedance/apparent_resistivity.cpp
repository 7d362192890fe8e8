#include "numerics/impedance/apparent_resistivity.h"

#include <cmath>

#include "numerics/constants.h"

namespace numerics::impedance {

double apparent_resistivity(std::complex<double> impedance, double frequency) {
  constexpr double field_factor = 0.2;  // mu0 / (2 pi) times the square of the field unit
  return field_factor * std::norm(impedance) / frequency;
}

double phase_degrees(std::complex<double> impedance) {
  return std::atan2(impedance.imag(), impedance.real()) * degrees_per_radian;
}

}  // namespace numerics::impedance
