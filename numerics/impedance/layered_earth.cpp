#include "numerics/impedance/layered_earth.h"

#include <cassert>
#include <cmath>
#include <numbers>

#include "numerics/constants.h"

namespace numerics::impedance {

std::complex<double> surface_impedance(std::span<const Layer> layers, double frequency) {
  assert(!layers.empty() && frequency > 0.0);
  const std::complex<double> i_omega_mu{0.0, 2.0 * std::numbers::pi * frequency * mu0};

  // Upward from the basement: each layer needs the impedance of the one below.
  std::complex<double> impedance = std::sqrt(i_omega_mu * layers.back().resistivity);
  for (std::size_t above = layers.size() - 1; above > 0; --above) {
    const Layer& layer = layers[above - 1];
    const std::complex<double> eta = std::sqrt(i_omega_mu * layer.resistivity);
    const std::complex<double> k = std::sqrt(i_omega_mu / layer.resistivity);
    const std::complex<double> reflected =
        (eta - impedance) / (eta + impedance) * std::exp(-2.0 * k * layer.thickness);
    impedance = eta * (1.0 - reflected) / (1.0 + reflected);
  }
  return impedance / (mu0 * field_unit);  // E/H in ohm to E/B in field units
}

}  // namespace numerics::impedance
