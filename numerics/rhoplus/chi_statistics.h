// chi_statistics.h: what chi to expect of normal errors.
#pragma once

namespace numerics::rhoplus {

/// Expected length of n independent normal errors of unit variance, sqrt(2) Gamma((n + 1)/2) / Gamma(n/2).
/// @param n at least 1
double expected_chi(int n);

/// The length that n normal errors exceed with a probability of 5 percent.
/// @param n at least 1
double chi_of_95_percent(int n);

}  // namespace numerics::rhoplus
