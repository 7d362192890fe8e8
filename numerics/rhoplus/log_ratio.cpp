#include "numerics/rhoplus/log_ratio.h"

#include <cmath>

namespace numerics::rhoplus {

namespace {

constexpr Eigen::Index lanes = 4;  // frequencies that are worked on together
using Lanes = Eigen::Array<double, lanes, 1>;

/// ln b - ln a of cells for which the series is cheaper.
constexpr double narrow = 0.5;
constexpr double negligible = 1e-17;

}  // namespace

std::complex<double> log_ratio(double a, double b, double omega) {
  // The ratio is 1 + z with z = (a - b)(s - 1)/((a + s)(b + 1)).
  const double modulus2 = a * a + omega * omega;
  const bool endless = std::isinf(b);
  const double t = endless ? -1.0 : (a - b) / (b + 1.0);
  const double excess =
      t * (2.0 * (omega * omega - a) + t * (omega * omega + 1.0)) / modulus2;  // |1 + z|^2 - 1
  double real = 0.0;
  if (std::abs(excess) < 0.5) {
    real = 0.5 * std::log1p(excess);
  } else if (endless) {
    real = std::log((a + 1.0) / std::sqrt(modulus2));
  } else {
    real = std::log((a + 1.0) / (b + 1.0)) + 0.5 * std::log((b * b + omega * omega) / modulus2);
  }
  const double imaginary =
      endless ? -std::atan2(omega, a) : std::atan2(omega * (a - b), a * b + omega * omega);
  return {real, imaginary};
}

LogRatios::LogRatios(std::span<const double> omega)
    : exact_omega_(omega),
      omega_(Eigen::ArrayXd::Ones((static_cast<Eigen::Index>(omega.size()) + lanes - 1) / lanes * lanes)) {
  for (std::size_t k = 0; k < omega.size(); ++k) {
    omega_[static_cast<Eigen::Index>(k)] = omega[k];
  }
  real = imaginary = Eigen::ArrayXd::Zero(omega_.size());
}

void LogRatios::between(double a, double b) {
  const double width = a > 0.0 ? std::log(b / a) : narrow;
  if (width < narrow) {
    // |ln(1 + z)| is no more than the width, so |u| is no more than tan(width/2).
    const double tangent = std::tan(0.5 * width);
    int terms = 1;
    for (double rest = tangent * tangent; rest > negligible; rest *= tangent * tangent) {
      ++terms;
    }
    sum_series(a, b, terms);
    return;
  }
  for (std::size_t k = 0; k < exact_omega_.size(); ++k) {
    const std::complex<double> ratio = log_ratio(a, b, exact_omega_[k]);
    real[static_cast<Eigen::Index>(k)] = ratio.real();
    imaginary[static_cast<Eigen::Index>(k)] = ratio.imag();
  }
}

/// ln(1 + z) = 2 artanh u = 2 (u + u^3/3 + u^5/5 + ...) with u = z/(2 + z) and z as in log_ratio; there
/// |z|^2 = t^2 (omega^2 + 1)/(a^2 + omega^2).
void LogRatios::sum_series(double a, double b, int terms) {
  const double t = (a - b) / (b + 1.0);
  for (Eigen::Index k = 0; k < omega_.size(); k += lanes) {
    const Lanes w = omega_.segment<lanes>(k);
    const Lanes w2 = w.square();
    const Lanes z_real = t * (w2 - a);  // times a^2 + omega^2, as all here
    const Lanes z_modulus2 = t * t * (w2 + 1.0);
    const Lanes inverse = (4.0 * (a * a + w2 + z_real) + z_modulus2).inverse();
    const Lanes u_real = (2.0 * z_real + z_modulus2) * inverse;
    const Lanes u_imaginary = (2.0 * t * (a + 1.0)) * w * inverse;
    const Lanes v_real = u_real.square() - u_imaginary.square();
    const Lanes v_imaginary = 2.0 * u_real * u_imaginary;
    Lanes sum_real = Lanes::Constant(2.0 / (2 * terms - 1));
    Lanes sum_imaginary = Lanes::Zero();
    for (int term = terms - 1; term > 0; --term) {
      const Lanes next = sum_real * v_real - sum_imaginary * v_imaginary + 2.0 / (2 * term - 1);
      sum_imaginary = sum_real * v_imaginary + sum_imaginary * v_real;
      sum_real = next;
    }
    real.segment<lanes>(k) = u_real * sum_real - u_imaginary * sum_imaginary;
    imaginary.segment<lanes>(k) = u_real * sum_imaginary + u_imaginary * sum_real;
  }
}

}  // namespace numerics::rhoplus
