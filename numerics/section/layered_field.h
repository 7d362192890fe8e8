// layered_field.h: the field of a layered earth at the node rows of a mesh, between them and in the air.
//
// z down, m; E and H at the top of the ground: E = 1, H = 1/Z.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "numerics/section/electromagnetic.h"

namespace numerics::section {

/// The field in rows of uniform conductivity, the last of them continued as a half space:
///
///   k = sqrt(i omega mu s), s = sigma + i omega epsilon, zeta = i omega mu / k, e = exp(-k h)
///   Z = zeta (Z'(1 + e^2) + zeta (1 - e^2)) / (zeta (1 + e^2) + Z'(1 - e^2))    from the bottom up
///   E' = E 2 e Z' / (Z'(1 + e^2) + zeta (1 - e^2))                              from the top down
///
/// with a prime at the row's bottom: Wait (1954), Geophysics 19, 281-289. 1 - e^2 is taken from expm1, so
/// that thin rows of a high resistivity lose no digits.
class LayeredField {
 public:
  /// @param heights       m, of each row of the ground, top to bottom; at least one
  /// @param conductivity  S/m, of each row
  LayeredField(const Frequency& frequency, std::span<const double> heights,
               std::span<const double> conductivity);

  struct Value {
    Complex electric;
    Complex magnetic;
  };
  /// At node row `row`, 0 at the ground, at most the number of rows.
  [[nodiscard]] Value at_node(std::size_t row) const { return {electric_[row], magnetic_[row]}; }
  /// At a depth below the top of a row (0 to its height, m), from the values at its two ends.
  [[nodiscard]] Value inside(std::size_t row, double depth) const;
  /// In the air, at a height above the ground, m.
  [[nodiscard]] Value above(double height) const;
  /// E / H at the ground, ohm
  [[nodiscard]] Complex impedance() const { return electric_[0] / magnetic_[0]; }

 private:
  Frequency frequency_;
  std::vector<double> heights_;
  std::vector<Complex> wave_number_;  // 1/m, of each row
  std::vector<Complex> electric_;     // at each node row
  std::vector<Complex> magnetic_;
};

}  // namespace numerics::section
