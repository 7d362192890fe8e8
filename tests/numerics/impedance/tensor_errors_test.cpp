// First-order errors beside the spread of many tensors drawn from the errors of the elements.
#include <cmath>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/numerics/impedance/made_tensors.h"

using namespace numerics::impedance;

namespace {

// Small against the elements, so that what is beyond first order is small against the tolerance.
constexpr double sigma = 0.005;
constexpr int draws = 8000;         // the spread is known to 1 / sqrt(16000), 0.8 percent
constexpr double tolerance = 0.05;  // relative

class Noise {
 public:
  /// By Cholesky factors of the covariance.
  std::complex<double> draw(const PartCovariance& known) {
    const double real = std::sqrt(known.real);
    const double shared = known.cross / real;
    const double rest = std::sqrt(known.imaginary - shared * shared);
    const double first = normal_(random_);
    return {real * first, shared * first + rest * normal_(random_)};
  }

 private:
  std::mt19937 random_{11};
  std::normal_distribution<double> normal_;
};

Tensor draw(const Tensor& tensor, Noise& noise) {
  Tensor drawn = tensor;
  for (std::size_t element = 0; element < element_count; ++element) {
    drawn.z[element] += noise.draw(tensor.covariance[element]);
  }
  return drawn;
}

Tipper draw(const Tipper& tipper, Noise& noise) {
  Tipper drawn = tipper;
  drawn.x += noise.draw(tipper.covariance_x);
  drawn.y += noise.draw(tipper.covariance_y);
  return drawn;
}

template <class Measured>
void expect_errors_as_spread(const Measured& measured) {
  const std::map<std::string, Estimate> estimates = made::quantities(measured);
  std::map<std::string, double> squares;
  Noise noise;
  for (int trial = 0; trial < draws; ++trial) {
    for (const auto& [name, drawn] : made::quantities(draw(measured, noise))) {
      const double off = made::difference(drawn.value, estimates.at(name).value, made::period_of(name));
      squares[name] += off * off;
    }
  }
  for (const auto& [name, estimate] : estimates) {
    const double spread = std::sqrt(squares.at(name) / draws);
    EXPECT_NEAR(estimate.error, spread, tolerance * spread) << name;
  }
}

}  // namespace

TEST(Tensor_errors, Equal_parts) { expect_errors_as_spread(made::worked_example(sigma)); }

TEST(Tensor_errors, Ellipses_of_resistivity_and_phase) {
  Tensor tensor = made::worked_example();
  const double resistivity_errors[] = {0.4, 0.2, 0.5, 0.4};  // percent
  const double phase_errors[] = {0.02, 0.15, 0.05, 0.3};     // degrees
  for (std::size_t element = 0; element < element_count; ++element) {
    const std::complex<double> z = tensor.z[element];
    tensor.covariance[element] = covariance_of(z, 100.0, resistivity_errors[element], phase_errors[element]);
  }
  expect_errors_as_spread(tensor);
}

TEST(Tensor_errors, Small_impedances_have_errors_in_proportion) {
  const std::complex<double> z(30.0, 40.0);
  const PartCovariance large = covariance_of(z, 100.0, 4.0, 2.0);
  const PartCovariance small = covariance_of(1e-3 * z, 1e-4, 4e-6, 2.0);
  EXPECT_GT(large.real, 0.0);
  EXPECT_NEAR(small.real, 1e-6 * large.real, 1e-15);
  EXPECT_NEAR(small.imaginary, 1e-6 * large.imaginary, 1e-15);
}

TEST(Tensor_errors, Three_dimensional_ground_with_a_negative_determinant) {
  Eigen::Matrix2d X;
  X << 3.0, 20.0, -14.0, 5.0;
  expect_errors_as_spread(
      made::tensor_of(made::of_phase_tensor(40.0, 8.0, 1.5, -0.6, X), {sigma * sigma, sigma * sigma}));
}

TEST(Tensor_errors, Arrows) {
  Tipper tipper = made::worked_tipper(0.0005);
  expect_errors_as_spread(tipper);
  tipper.covariance_x = {4e-6, 1e-6, 1e-6};
  tipper.covariance_y = {1e-6, 9e-6, -2e-6};
  expect_errors_as_spread(tipper);
}
