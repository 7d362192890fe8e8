// bostick.h: an apparent resistivity and phase as a resistivity at a depth.
//
// Bostick (1977); Jones (1983), J. Geophys. 53, 72-73; with the phase in place of the slope, Weidelt et al.
// (1980). Conventions as in tensor.h.
#pragma once
#include "numerics/impedance/tensor.h"

namespace numerics::impedance {

struct BostickPoint {
  Estimate depth;        // m
  Estimate resistivity;  // ohm-m
};

/// depth = sqrt(rho / (mu0 omega)), resistivity = rho (pi / (2 phi) - 1). A phase outside 0 to 90 degrees,
/// both ends left out, gives a depth without a resistivity; that of Zyx is brought to the first quadrant by
/// the caller. The errors of resistivity and phase count as independent.
BostickPoint bostick_point(const ApparentEarth& earth, double frequency);

}  // namespace numerics::impedance
