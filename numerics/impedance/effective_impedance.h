// effective_impedance.h: one impedance for a whole tensor, whatever its axes. Conventions as in tensor.h.
#pragma once
#include "numerics/impedance/tensor.h"

namespace numerics::impedance {

/// Resistivity 0.2 |det Z| / f and phase half of arg det Z (Berdichevsky & Dmitriev 1976).
ApparentEarth determinant_earth(const Tensor& tensor, double frequency);

/// (Zxy - Zyx) / 2.
ApparentEarth mean_earth(const Tensor& tensor, double frequency);

/// sqrt((Zxx^2 + Zxy^2 + Zyx^2 + Zyy^2) / 2), the root whose real part is positive (Rung-Arunwan et al. 2016,
/// PEPI 253, 1-4).
ApparentEarth sum_of_squares_earth(const Tensor& tensor, double frequency);

}  // namespace numerics::impedance
