// layered_earth.h: what magnetotelluric instruments measure above horizontal layers.
//
// Conventions: layers from the surface down; resistivity ohm-m; thickness m; frequency Hz; impedance
// Z = E/B in mV/km/nT with the time factor exp(+i omega t), so that a half-space has a phase of +45 degrees.
#pragma once
#include <complex>
#include <span>

namespace numerics::impedance {

struct Layer {
  double resistivity = 100.0;  // ohm-m, > 0
  double thickness = 0.0;      // m; ignored in the last layer, which has no bottom
};

/// Impedance at the surface of layered ground under a vertically incident plane wave.
///
///   eta_j = sqrt(i omega mu0 rho_j),   k_j = sqrt(i omega mu0 / rho_j)
///   Z_N = eta_N
///   Z_j = eta_j (1 - R_j exp(-2 k_j h_j)) / (1 + R_j exp(-2 k_j h_j)),
///   R_j = (eta_j - Z_(j+1)) / (eta_j + Z_(j+1))
///
/// Cagniard (1953), Geophysics 18, 605-635; the recursion for any number of layers after Wait (1954),
/// Geophysics 19, 281-289. The exponentials only fall, so thick layers and high frequencies don't overflow.
///
/// @param layers     at least one
/// @param frequency  f, Hz, > 0
std::complex<double> surface_impedance(std::span<const Layer> layers, double frequency);

}  // namespace numerics::impedance
