#include "numerics/impedance/effective_impedance.h"

#include "numerics/impedance/earth_of.h"

namespace numerics::impedance {

namespace {

using Complex = ComplexOf<Propagated<2 * element_count>>;

/// Of the impedance whose square is given, the root whose real part isn't negative.
ApparentEarth earth_of_square(const Complex& square, double frequency, const Tensor& tensor) {
  return earth_of(sqrt(length(square)), 0.5 * atan2(square.imaginary, square.real), frequency,
                  tensor.covariance);
}

}  // namespace

ApparentEarth determinant_earth(const Tensor& tensor, double frequency) {
  const auto z = measured(tensor.z);
  return earth_of_square(z[0] * z[3] - z[1] * z[2], frequency, tensor);
}

ApparentEarth mean_earth(const Tensor& tensor, double frequency) {
  const auto z = measured(tensor.z);
  return earth_of(0.5 * (z[1] - z[2]), frequency, tensor.covariance);
}

ApparentEarth sum_of_squares_earth(const Tensor& tensor, double frequency) {
  const auto z = measured(tensor.z);
  return earth_of_square(0.5 * (z[0] * z[0] + z[1] * z[1] + z[2] * z[2] + z[3] * z[3]), frequency, tensor);
}

}  // namespace numerics::impedance
