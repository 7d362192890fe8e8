#include "tensor/element_origins.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/median.h"

namespace Module_tensor {

namespace {

// Resistivities that were computed from impedances differ from them by the rounding of 32-bit numbers only;
// printed ones by what was edited, or by the digits that were left out. Relative.
constexpr double computed = 1e-5;
constexpr double printed = 1e-4;

using Pair = std::array<CurveType, 2>;
constexpr Pair diagonals{CurveType::ExHx, CurveType::EyHy};
constexpr Pair off_diagonals{CurveType::ExHy, CurveType::EyHx};

std::vector<double> ratios_of(const StationCurves& curves, const Pair& pair) {
  std::vector<double> ratios;
  for (const CurveType type : pair) {
    const std::vector<double>& of_curve = curves.source(type).impedance_ratios;
    ratios.insert(ratios.end(), of_curve.begin(), of_curve.end());
  }
  return ratios;
}

/// Median difference of resistivities from those of the impedances in a unit, relative.
double difference(std::vector<double> ratios, double unit) {
  for (double& ratio : ratios) {
    ratio = std::abs(ratio / unit - 1.0);
  }
  return median(std::move(ratios));
}

}  // namespace

std::optional<MixedOrigins> mixed_origins(const StationCurves& curves) {
  const auto of_pair = [&](const Pair& from_impedances, const Pair& others) -> std::optional<MixedOrigins> {
    const std::vector<double> ratios = ratios_of(curves, from_impedances);
    const std::vector<double> other_ratios = ratios_of(curves, others);
    if (ratios.empty() || other_ratios.empty()) {
      return std::nullopt;
    }
    const double unit = median(ratios);  // files have impedances in units of their own
    const double of_others = difference(other_ratios, unit);
    if (!(difference(ratios, unit) < computed) || !(of_others > printed)) {
      return std::nullopt;
    }
    return MixedOrigins{from_impedances == diagonals, 0.5 * of_others};  // |Z| goes with the root
  };
  const auto mixed = of_pair(diagonals, off_diagonals);
  return mixed ? mixed : of_pair(off_diagonals, diagonals);
}

}  // namespace Module_tensor
