#include "numerics/impedance/impedance_strike.h"

#include <cmath>

#include "numerics/constants.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/propagated.h"

namespace numerics::impedance {

namespace {

using Number = Propagated<2 * element_count>;

/// Sums and differences of the elements; S1 and D2 don't depend on the axes.
template <class Real>
struct Modified {
  ComplexOf<Real> S1, S2, D1, D2;
};

template <class Real>
Modified<Real> modified(const std::array<ComplexOf<Real>, element_count>& z) {
  return {z[0] + z[3], z[1] + z[2], z[0] - z[3], z[1] - z[2]};
}

/// Re(a conj b).
template <class Real>
Real scalar_product(const ComplexOf<Real>& a, const ComplexOf<Real>& b) {
  return a.real * b.real + a.imaginary * b.imaginary;
}

/// [a, b] of Bahr (1988).
Number commutator(const ComplexOf<Number>& a, const ComplexOf<Number>& b) {
  return a.real * b.imaginary - a.imaginary * b.real;
}

template <class Real>
ComplexOf<Real> form_of(const Modified<Real>& m) {
  return {norm(m.S2) - norm(m.D1), -2.0 * scalar_product(m.D1, m.S2)};
}

// Readings are 32-bit: axes that are told apart by no more than 1e-7 of the elements, here squared, are left
// open.
constexpr double rounding = 1e-14;

}  // namespace

std::complex<double> swift_form(const Tensor& tensor) {
  std::array<ComplexOf<double>, element_count> z;
  double squares = 0.0;
  for (std::size_t element = 0; element < element_count; ++element) {
    z[element] = {tensor.z[element].real(), tensor.z[element].imag()};
    squares += std::norm(tensor.z[element]);
  }
  const ComplexOf<double> form = form_of(modified(z));
  const double real = form.real / squares;
  const double imaginary = form.imaginary / squares;
  return std::hypot(real, imaginary) > rounding ? std::complex{real, imaginary} : 0.0;
}

SwiftStrike swift_strike(const Tensor& tensor) {
  const Modified<Number> m = modified(measured(tensor.z));
  const ComplexOf<Number> form = form_of(m);
  SwiftStrike swift;
  swift.skew = estimate(length(m.S1) / length(m.D2), tensor.covariance);
  if (swift_form(tensor) != 0.0) {
    swift.strike = estimate(0.25 * degrees_per_radian * atan2(form.imaginary, form.real), tensor.covariance);
    swift.strike.value = within_period(swift.strike.value, 90.0);
  }
  return swift;
}

BahrSkew bahr_skew(const Tensor& tensor) {
  const Modified<Number> m = modified(measured(tensor.z));
  const Number scale = length(m.D2);
  const Number D1_S2 = commutator(m.D1, m.S2);
  const Number S1_D2 = commutator(m.S1, m.D2);
  const auto known = [&](const Number& number) { return estimate(number, tensor.covariance); };
  return {.skew = known(sqrt(abs(D1_S2 - S1_D2)) / scale),
          .mu = known(sqrt(abs(D1_S2) + abs(S1_D2)) / scale),
          .sigma = known((norm(m.D1) + norm(m.S2)) / norm(m.D2))};
}

}  // namespace numerics::impedance
