#include "numerics/impedance/bostick.h"

#include <cmath>
#include <numbers>

#include "numerics/constants.h"
#include "numerics/impedance/propagated.h"

namespace numerics::impedance {

BostickPoint bostick_point(const ApparentEarth& earth, double frequency) {
  constexpr double quarter_turn = 90.0;  // degrees
  const auto square = [](double error) { return error * error; };
  // Resistivity and phase stand as the two parts of one number; their errors are independent.
  const auto [rho, phi] = measured(std::array{std::complex{earth.resistivity.value, earth.phase.value}})[0];
  const std::array known{PartCovariance{square(earth.resistivity.error), square(earth.phase.error)}};
  const double mu0_omega = mu0 * 2.0 * std::numbers::pi * frequency;

  BostickPoint point;
  point.depth = estimate(sqrt(1.0 / mu0_omega * rho), known);
  if (phi.value > 0.0 && phi.value < quarter_turn) {
    point.resistivity = estimate(
        rho * (phi.mapped(quarter_turn / phi.value, -quarter_turn / (phi.value * phi.value)) + -1.0), known);
  }
  return point;
}

}  // namespace numerics::impedance
