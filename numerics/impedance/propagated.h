// propagated.h: numbers that carry their derivatives by measured ones, so that each formula is written once
// and its first-order error follows.
//
// The measured numbers are the real and the imaginary parts of complex elements, in this order. Where a value
// has no derivative (a length of 0, an angle of nothing) the slopes aren't finite; `estimate` leaves the
// error out.
#pragma once
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>

#include "numerics/impedance/estimate.h"

namespace numerics::impedance {

template <std::size_t parts>
struct Propagated {
  double value = 0.0;
  std::array<double, parts> slopes{};  // derivatives by the parts

  /// A function of one number, whose value and derivative are known.
  [[nodiscard]] Propagated mapped(double result, double derivative) const {
    Propagated number{result};
    for (std::size_t part = 0; part < parts; ++part) {
      number.slopes[part] = derivative * slopes[part];
    }
    return number;
  }

  /// The same of two numbers.
  [[nodiscard]] Propagated mapped(const Propagated& other, double result, double derivative,
                                  double by_other) const {
    Propagated number{result};
    for (std::size_t part = 0; part < parts; ++part) {
      number.slopes[part] = derivative * slopes[part] + by_other * other.slopes[part];
    }
    return number;
  }

  friend Propagated operator-(const Propagated& a) { return a.mapped(-a.value, -1.0); }
  friend Propagated operator+(const Propagated& a, double b) { return a.mapped(a.value + b, 1.0); }
  friend Propagated operator*(double b, const Propagated& a) { return a.mapped(b * a.value, b); }
  friend Propagated operator+(const Propagated& a, const Propagated& b) {
    return a.mapped(b, a.value + b.value, 1.0, 1.0);
  }
  friend Propagated operator-(const Propagated& a, const Propagated& b) {
    return a.mapped(b, a.value - b.value, 1.0, -1.0);
  }
  friend Propagated operator*(const Propagated& a, const Propagated& b) {
    return a.mapped(b, a.value * b.value, b.value, a.value);
  }
  friend Propagated operator/(const Propagated& a, const Propagated& b) {
    const double quotient = a.value / b.value;
    return a.mapped(b, quotient, 1.0 / b.value, -quotient / b.value);
  }
  friend Propagated sqrt(const Propagated& a) {
    const double root = std::sqrt(a.value);
    return a.mapped(root, 0.5 / root);
  }
  friend Propagated abs(const Propagated& a) {
    return a.mapped(std::abs(a.value), a.value / std::abs(a.value));
  }
  friend Propagated atan(const Propagated& a) {
    return a.mapped(std::atan(a.value), 1.0 / (1.0 + a.value * a.value));
  }
  friend Propagated atan2(const Propagated& y, const Propagated& x) {
    const double square = x.value * x.value + y.value * y.value;
    const double angle = square > 0.0 ? std::atan2(y.value, x.value) : not_known;
    return y.mapped(x, angle, x.value / square, -y.value / square);
  }
  friend Propagated hypot(const Propagated& x, const Propagated& y) {
    const double length = std::hypot(x.value, y.value);
    return x.mapped(y, length, x.value / length, y.value / length);
  }
};

/// A complex number of real ones that may be propagated.
template <class Number>
struct ComplexOf {
  Number real;
  Number imaginary;

  friend ComplexOf operator+(const ComplexOf& a, const ComplexOf& b) {
    return {a.real + b.real, a.imaginary + b.imaginary};
  }
  friend ComplexOf operator-(const ComplexOf& a, const ComplexOf& b) {
    return {a.real - b.real, a.imaginary - b.imaginary};
  }
  friend ComplexOf operator*(const ComplexOf& a, const ComplexOf& b) {
    return {a.real * b.real - a.imaginary * b.imaginary, a.real * b.imaginary + a.imaginary * b.real};
  }
  friend ComplexOf operator*(double factor, const ComplexOf& a) {
    return {factor * a.real, factor * a.imaginary};
  }
};

template <class Number>
Number length(const ComplexOf<Number>& a) {
  using std::hypot;
  return hypot(a.real, a.imaginary);
}

/// |a|^2.
template <class Number>
Number norm(const ComplexOf<Number>& a) {
  return a.real * a.real + a.imaginary * a.imaginary;
}

/// Measured elements as numbers whose errors are to be followed.
template <std::size_t elements>
std::array<ComplexOf<Propagated<2 * elements>>, elements> measured(
    const std::array<std::complex<double>, elements>& z) {
  std::array<ComplexOf<Propagated<2 * elements>>, elements> numbers{};
  for (std::size_t element = 0; element < elements; ++element) {
    numbers[element].real.value = z[element].real();
    numbers[element].real.slopes[2 * element] = 1.0;
    numbers[element].imaginary.value = z[element].imag();
    numbers[element].imaginary.slopes[2 * element + 1] = 1.0;
  }
  return numbers;
}

/// The number with its standard error sqrt(g C g^T). Parts that the number doesn't depend on needn't be
/// known. A value or an error that isn't finite is left out.
template <std::size_t elements>
Estimate estimate(const Propagated<2 * elements>& number,
                  const std::array<PartCovariance, elements>& covariance) {
  if (!std::isfinite(number.value)) {
    return {};
  }
  double variance = 0.0;
  for (std::size_t element = 0; element < elements; ++element) {
    const double by_real = number.slopes[2 * element];
    const double by_imaginary = number.slopes[2 * element + 1];
    if (by_real != 0.0) {
      variance += by_real * by_real * covariance[element].real;
    }
    if (by_imaginary != 0.0) {
      variance += by_imaginary * by_imaginary * covariance[element].imaginary;
    }
    if (by_real != 0.0 && by_imaginary != 0.0) {
      variance += 2.0 * by_real * by_imaginary * covariance[element].cross;
    }
  }
  const double error = std::sqrt(variance < 0.0 ? 0.0 : variance);  // of a flat ellipse, by rounding
  return {number.value, std::isfinite(error) ? error : not_known};
}

/// What is known of a weighted sum of independent elements. Those of weight 0 needn't be known.
template <std::size_t elements>
PartCovariance covariance_of_sum(const std::array<PartCovariance, elements>& covariance,
                                 const std::array<double, elements>& weights) {
  PartCovariance sum{0.0, 0.0, 0.0};
  for (std::size_t element = 0; element < elements; ++element) {
    if (const double square = weights[element] * weights[element]; square != 0.0) {
      sum.real += square * covariance[element].real;
      sum.imaginary += square * covariance[element].imaginary;
      sum.cross += square * covariance[element].cross;
    }
  }
  return sum;
}

}  // namespace numerics::impedance
