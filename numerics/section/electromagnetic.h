// electromagnetic.h: the constants of a section's fields, and what a frequency makes of them.
//
// Time factor exp(+i omega t). Displacement currents count everywhere: above some 100 Hz the air carries a
// field of its own. Digits and values are those of the inversion that the models come from.
#pragma once
#include <complex>

namespace numerics::section {

using Complex = std::complex<double>;

inline constexpr double pi = 3.1415927;
inline constexpr double permeability = 4e-7 * pi;                  // H/m
inline constexpr double permittivity = 8.85433e-12;                // F/m
inline constexpr double air_conductivity = 1e-18;                  // S/m
inline constexpr double sea_conductivity = 3.25;                   // S/m
inline constexpr double air_resistivity = 1.0 / air_conductivity;  // ohm-m
inline constexpr double sea_resistivity = 1.0 / sea_conductivity;

class Frequency {
 public:
  /// @param frequency  Hz, > 0
  explicit Frequency(double frequency)
      : omega_mu_(2.0 * pi * frequency * permeability), omega_epsilon_(2.0 * pi * frequency * permittivity) {}

  /// omega mu, ohm/m
  [[nodiscard]] double omega_mu() const { return omega_mu_; }
  /// sigma + i omega epsilon, S/m, of a conductivity in S/m
  [[nodiscard]] Complex admittivity(double conductivity) const { return {conductivity, omega_epsilon_}; }

 private:
  double omega_mu_;
  double omega_epsilon_;
};

/// a b without the look for values that aren't finite, which costs more than the product.
inline Complex product(const Complex& a, const Complex& b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

/// 1 / z, for a z whose square neither overflows nor vanishes.
inline Complex reciprocal(const Complex& z) {
  const double square = z.real() * z.real() + z.imag() * z.imag();
  return {z.real() / square, -z.imag() / square};
}

}  // namespace numerics::section
