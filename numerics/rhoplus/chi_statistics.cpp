#include "numerics/rhoplus/chi_statistics.h"

#include <cmath>

namespace numerics::rhoplus {

namespace {

/// Probability that chi-squared of n degrees of freedom exceeds `chi2`: a finite sum, from
/// Q(a + 1, x) = Q(a, x) + x^a exp(-x)/Gamma(a + 1) with Q(1/2, x) = erfc(sqrt x) and Q(1, x) = exp(-x),
/// where a = n/2 and x = chi2/2.
double exceedance(int n, double chi2) {
  const double x = 0.5 * chi2;
  double sum = n % 2 == 1 ? std::erfc(std::sqrt(x)) : std::exp(-x);
  for (int twice_a = n % 2 == 1 ? 1 : 2; twice_a < n; twice_a += 2) {
    const double a = 0.5 * twice_a;
    sum += std::exp(a * std::log(x) - x - std::lgamma(a + 1.0));
  }
  return sum;
}

}  // namespace

double expected_chi(int n) {
  return std::sqrt(2.0) * std::exp(std::lgamma(0.5 * (n + 1)) - std::lgamma(0.5 * n));
}

double chi_of_95_percent(int n) {
  constexpr double exceeded = 0.05;
  constexpr int halvings = 60;
  double low = 0.0;
  double high = n + 10.0 * std::sqrt(2.0 * n);
  for (int i = 0; i < halvings; ++i) {
    const double middle = 0.5 * (low + high);
    (exceedance(n, middle) > exceeded ? low : high) = middle;
  }
  return std::sqrt(0.5 * (low + high));
}

}  // namespace numerics::rhoplus
