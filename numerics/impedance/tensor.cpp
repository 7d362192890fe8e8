#include "numerics/impedance/tensor.h"

#include <algorithm>
#include <numbers>

#include "numerics/impedance/apparent_resistivity.h"

namespace numerics::impedance {

namespace {

constexpr double degrees_in_radian = 180.0 / std::numbers::pi;
constexpr double largest_phase_error = 90.0;  // degrees: nothing is known of the phase

}  // namespace

std::complex<double> impedance_of(double resistivity, double phase, double frequency) {
  return std::polar(std::sqrt(5.0 * frequency * resistivity), phase / degrees_in_radian);
}

PartCovariance covariance_of(std::complex<double> impedance, double resistivity, double resistivity_error,
                             double phase_error) {
  const double size = std::abs(impedance);
  double along = size * resistivity_error / (2.0 * resistivity);
  double across = size * std::min(phase_error, largest_phase_error) / degrees_in_radian;
  if (std::isnan(phase_error)) {
    across = along;
  } else if (std::isnan(resistivity_error)) {
    along = across;
  }
  if (!std::isfinite(along) || !std::isfinite(across)) {
    return {};
  }
  const double c = impedance.real() / size;
  const double s = impedance.imag() / size;
  const double along_2 = along * along;
  const double across_2 = across * across;
  return {c * c * along_2 + s * s * across_2, s * s * along_2 + c * c * across_2,
          c * s * (along_2 - across_2)};
}

Tensor rotated(const Tensor& tensor, double degrees) {
  const double c = std::cos(degrees / degrees_in_radian);
  const double s = std::sin(degrees / degrees_in_radian);
  const std::array<std::array<double, 2>, 2> R{{{c, s}, {-s, c}}};
  Tensor turned;
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      std::complex<double> z;
      PartCovariance sum{0.0, 0.0, 0.0};
      for (std::size_t k = 0; k < 2; ++k) {
        for (std::size_t l = 0; l < 2; ++l) {
          const double weight = R[i][k] * R[j][l];
          const PartCovariance& known = tensor.covariance[2 * k + l];
          z += weight * tensor.z[2 * k + l];
          sum.real += weight * weight * known.real;
          sum.imaginary += weight * weight * known.imaginary;
          sum.cross += weight * weight * known.cross;
        }
      }
      turned.z[2 * i + j] = z;
      turned.covariance[2 * i + j] = sum;
    }
  }
  return turned;
}

}  // namespace numerics::impedance
