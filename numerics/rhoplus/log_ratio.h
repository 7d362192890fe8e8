// log_ratio.h: the one function from which every response, derivative bound and certificate of the Rho+
// solver is computed.
#pragma once
#include <complex>

namespace numerics::rhoplus {

/// L(a; s) - L(b; s) with s = i omega and L(u; s) = ln[(u + 1)/(u + s)]: what a density of 1 between a and b
/// adds to ln c. All arguments in units of the reference frequency, 0 <= a <= b; b may be infinite (L is 0
/// there).
///
/// Exact to rounding also where a and b are close or both are far from omega, where the difference of two
/// logarithms would have no digit left.
std::complex<double> log_ratio(double a, double b, double omega);

}  // namespace numerics::rhoplus
