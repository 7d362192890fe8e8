// constants.h: constants of the electromagnetic field, in SI units unless said.
#pragma once
#include <numbers>

namespace numerics {

inline constexpr double mu0 = 4e-7 * std::numbers::pi;  // H/m, permeability of the ground and of free space

/// 1 mV/km/nT, the field unit of impedances E/B, in m/s: (1e-6 V/m) / (1e-9 T).
inline constexpr double field_unit = 1e3;

inline constexpr double degrees_per_radian = 180.0 / std::numbers::pi;
inline constexpr double radians_per_degree = std::numbers::pi / 180.0;

}  // namespace numerics
