// impedance_strike.h: strike and skews from the impedances themselves, which distortion affects.
//
// Swift (1967), thesis, MIT; Sims & Bostick (1969), Univ. Texas, EGRL report 58; Bahr (1988), J. Geophys. 62,
// 119-127, and (1991), PEPI 66, 24-38. Conventions as in tensor.h.
#pragma once
#include "numerics/impedance/tensor.h"

namespace numerics::impedance {

struct SwiftStrike {
  Estimate strike;  // degrees, -45 < strike <= 45; strike +- 90 is an equal solution
  Estimate skew;    // |Zxx + Zyy| / |Zxy - Zyx|
};

/// The axes in which |Zxx|^2 + |Zyy|^2 is least. No values where the elements leave them open.
SwiftStrike swift_strike(const Tensor& tensor);

/// What may be added up over tensors: the sum's argument is four times the angle at which the sum of
/// (|Zxx'|^2 + |Zyy'|^2) / |Z|^2 is least, |Z|^2 being the sum over the four elements. 0 where it is
/// rounding.
std::complex<double> swift_form(const Tensor& tensor);

struct BahrSkew {
  Estimate skew;   // eta, the phase-sensitive skew; below 0.1 two-dimensional or distorted so, above 0.3 3-D
  Estimate mu;     // phase differences
  Estimate sigma;  // two-dimensionality
};

/// Dimensionless. With S1 = Zxx + Zyy, S2 = Zxy + Zyx, D1 = Zxx - Zyy, D2 = Zxy - Zyx and
/// [a, b] = Re a Im b - Im a Re b:
///   eta = sqrt(|[D1, S2] - [S1, D2]|) / |D2|
///   mu = sqrt(|[D1, S2]| + |[S1, D2]|) / |D2|
///   sigma = (|D1|^2 + |S2|^2) / |D2|^2
/// No values where D2 is 0.
BahrSkew bahr_skew(const Tensor& tensor);

}  // namespace numerics::impedance
