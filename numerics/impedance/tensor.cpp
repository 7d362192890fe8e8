#include "numerics/impedance/tensor.h"

#include <algorithm>

#include "numerics/constants.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/earth_of.h"

namespace numerics::impedance {

namespace {

constexpr double largest_phase_error = 90.0;  // degrees: nothing is known of the phase

}  // namespace

std::complex<double> impedance_of(double resistivity, double phase, double frequency) {
  return std::polar(std::sqrt(frequency * resistivity / resistivity_factor), phase * radians_per_degree);
}

PartCovariance covariance_of(std::complex<double> impedance, double resistivity, double resistivity_error,
                             double phase_error) {
  const double size = std::abs(impedance);
  double along = size * resistivity_error / (2.0 * resistivity);
  double across = size * std::min(phase_error, largest_phase_error) * radians_per_degree;
  if (phase_error >= largest_phase_error && std::isfinite(along)) {
    across = std::max(across, along);
  }
  if (!std::isfinite(along)) {
    along = across;
  }
  if (!std::isfinite(across)) {
    across = along;
  }
  if (!std::isfinite(along) || !(size > 0.0)) {
    return {};
  }
  const double c = impedance.real() / size;
  const double s = impedance.imag() / size;
  const double along_2 = along * along;
  const double across_2 = across * across;
  return {c * c * along_2 + s * s * across_2, s * s * along_2 + c * c * across_2,
          c * s * (along_2 - across_2)};
}

ApparentEarth apparent_earth(std::complex<double> impedance, const PartCovariance& covariance,
                             double frequency) {
  return earth_of(measured(std::array{impedance})[0], frequency, std::array{covariance});
}

Tensor rotated(const Tensor& tensor, double degrees) {
  const Turn turn = turn_by(degrees);
  const std::array<std::array<double, 2>, 2> R{{{turn.cosine, turn.sine}, {-turn.sine, turn.cosine}}};
  Tensor turned;
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      std::array<double, element_count> weights{};
      for (std::size_t k = 0; k < 2; ++k) {
        for (std::size_t l = 0; l < 2; ++l) {
          weights[2 * k + l] = R[i][k] * R[j][l];
          turned.z[2 * i + j] += weights[2 * k + l] * tensor.z[2 * k + l];
        }
      }
      turned.covariance[2 * i + j] = covariance_of_sum(tensor.covariance, weights);
    }
  }
  return turned;
}

}  // namespace numerics::impedance
