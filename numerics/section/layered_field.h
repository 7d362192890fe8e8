// layered_field.h: the field of a layered earth at the node rows of a mesh and between them.
//
// Time factor exp(+i omega t); z down, m; E and H at the top of the ground: E = 1, H = 1/Z.
#pragma once
#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace numerics::section {

using Complex = std::complex<double>;

/// omega mu0 for a frequency in Hz, ohm/m.
double omega_mu(double frequency);

/// The field in rows of uniform resistivity, the last of them continued as a half space:
///
///   k = sqrt(i omega mu / rho), zeta = i omega mu / k, e = exp(-k h)
///   Z = zeta (Z'(1 + e^2) + zeta (1 - e^2)) / (zeta (1 + e^2) + Z'(1 - e^2))    from the bottom up
///   E' = E 2 e Z' / (Z'(1 + e^2) + zeta (1 - e^2))                              from the top down
///
/// with a prime at the row's bottom: Wait (1954), Geophysics 19, 281-289. 1 - e^2 is taken from expm1, so
/// that thin rows of a high resistivity lose no digits.
class LayeredField {
 public:
  /// @param omega_mu0    omega mu0, > 0
  /// @param heights      m, of each row of the ground, top to bottom; at least one
  /// @param resistivity  ohm-m, of each row
  LayeredField(double omega_mu0, std::span<const double> heights, std::span<const double> resistivity);

  /// E and H at node row `row`, 0 at the ground, at most the number of rows
  [[nodiscard]] Complex electric(std::size_t row) const { return electric_[row]; }
  [[nodiscard]] Complex magnetic(std::size_t row) const { return magnetic_[row]; }
  /// E / H at the ground, ohm
  [[nodiscard]] Complex impedance() const { return electric_[0] / magnetic_[0]; }

  /// E and H at a depth below the top of a row (0 to its height, m), from the values at its two ends.
  struct Value {
    Complex electric;
    Complex magnetic;
  };
  [[nodiscard]] Value inside(std::size_t row, double depth) const;

 private:
  std::vector<double> heights_;
  std::vector<Complex> wave_number_;  // 1/m, of each row
  std::vector<Complex> electric_;     // at each node row
  std::vector<Complex> magnetic_;
};

}  // namespace numerics::section
