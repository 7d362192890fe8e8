// log_ratio.h: the one function from which every response, derivative bound and certificate of the Rho+
// solver is computed.
#pragma once
#include <complex>
#include <span>

#include <Eigen/Core>

namespace numerics::rhoplus {

/// L(a; s) - L(b; s) with s = i omega and L(u; s) = ln[(u + 1)/(u + s)]: what a density of 1 between a and b
/// adds to ln c. All arguments in units of the reference frequency, 0 <= a <= b; b may be infinite (L is 0
/// there).
///
/// Exact to rounding also where a and b are close or both are far from omega, where the difference of two
/// logarithms would have no digit left.
std::complex<double> log_ratio(double a, double b, double omega);

/// The same for many frequencies at once, which a narrow cell makes cheap: instead of logarithm and arc
/// tangent a few terms of a series.
class LogRatios {
 public:
  explicit LogRatios(std::span<const double> omega);

  /// Fills `real` and `imaginary`.
  void between(double a, double b);

  Eigen::ArrayXd real;  // by frequency; what is behind them is padding
  Eigen::ArrayXd imaginary;

 private:
  void sum_series(double a, double b, int terms);

  std::span<const double> exact_omega_;
  Eigen::ArrayXd omega_;  // padded
};

}  // namespace numerics::rhoplus
