// tensor.h: the impedance tensor of a station at one frequency, with its errors.
//
// Conventions here and in all that works on tensors: x north, y east, z down, as the axes of the readings
// have them; angles in degrees, clockwise from north, from x to y; time dependence exp(+i omega t), so that a
// uniform earth has a Zxy of phase +45 and a Zyx of phase -135 degrees; E = Z B, impedance in mV/km/nT;
// frequency Hz; apparent resistivity ohm-m. Errors are one standard deviation. What isn't known is NaN
// (estimate.h).
#pragma once
#include <array>
#include <complex>
#include <cstddef>
#include <cstdint>

#include "numerics/impedance/estimate.h"

namespace numerics::impedance {

enum class Element : std::uint8_t { xx, xy, yx, yy };
inline constexpr std::size_t element_count = 4;

/// The four elements, electric field by rows and magnetic field by columns, and what is known of each.
/// Different elements count as independent: files don't say how they depend on each other.
struct Tensor {
  std::array<std::complex<double>, element_count> z{};  // mV/km/nT, in the order of Element
  std::array<PartCovariance, element_count> covariance{};

  std::complex<double>& operator[](Element element) { return z[static_cast<std::size_t>(element)]; }
  const std::complex<double>& operator[](Element element) const {
    return z[static_cast<std::size_t>(element)];
  }
  PartCovariance& known(Element element) { return covariance[static_cast<std::size_t>(element)]; }
  [[nodiscard]] const PartCovariance& known(Element element) const {
    return covariance[static_cast<std::size_t>(element)];
  }
};

/// |Z| = sqrt(5 f rho), Z = |Z| exp(i phi). Resistivity at or above 0.
std::complex<double> impedance_of(double resistivity, double phase, double frequency);

/// What errors of resistivity (ohm-m) and of phase (degrees) say of the impedance: half axes |Z| d_rho/(2
/// rho) along Z and |Z| d_phi across it. Where one of them isn't finite the other one counts for both parts.
/// Phase errors beyond 90 degrees count as 90: then nothing is known of the phase, and across it is at least
/// what it is along, so that an element far below its error gets back the error that it was made from.
PartCovariance covariance_of(std::complex<double> impedance, double resistivity, double resistivity_error,
                             double phase_error);

/// Resistivity and phase (-180 to 180) of an element, with first-order errors.
ApparentEarth apparent_earth(std::complex<double> impedance, const PartCovariance& covariance,
                             double frequency);

/// The tensor in axes turned clockwise by so many degrees: Z' = R Z R^T with R = [[cos, sin], [-sin, cos]].
/// The errors are those of independent elements (Kelbert 2020, Geophysics 85, F1-F17, on what that leaves
/// out).
Tensor rotated(const Tensor& tensor, double degrees);

}  // namespace numerics::impedance
