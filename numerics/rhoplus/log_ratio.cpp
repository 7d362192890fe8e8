#include "numerics/rhoplus/log_ratio.h"

#include <cmath>

namespace numerics::rhoplus {

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

}  // namespace numerics::rhoplus
