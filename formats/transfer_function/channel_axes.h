// channel_axes.h: from the axes of the channels, which needn't be orthogonal, to those of a site.
//
// A sensor measures the projection of a field on its direction. With the directions of the magnetic channels
// as the rows of U and of the electric ones as the rows of V, H_channels = U H and E_channels = V E, so that
// Z = V^-1 Z_channels U and T = T_channels U.
#pragma once
#include <array>
#include <complex>
#include <cstddef>
#include <optional>
#include <vector>

namespace formats::transfer_function {

using Complex = std::complex<double>;

/// Azimuths of the channels, degrees clockwise from the x axis that is asked for.
struct ChannelAzimuths {
  std::array<double, 2> magnetic{0.0, 90.0};
  std::array<double, 2> electric{0.0, 90.0};
};

/// Rows of transfer functions from two magnetic channels, with what is known of their errors: the inverse
/// signal power of the magnetic channels and the residual covariance of the outputs, both Hermitian.
struct ChannelFunctions {
  std::array<std::array<Complex, 2>, 2> impedance{};  // by electric channel
  std::array<Complex, 2> tipper{};
  std::array<std::array<Complex, 2>, 2> inverse_power{};
  std::array<std::array<Complex, 2>, 2> electric_residuals{};
  double vertical_residual = 0.0;
};

/// The same in orthogonal axes, and the variances N_ii S_jj of the complex values.
struct OrthogonalFunctions {
  std::array<std::array<Complex, 2>, 2> impedance{};
  std::array<std::array<double, 2>, 2> impedance_variance{};
  std::array<Complex, 2> tipper{};
  std::array<double, 2> tipper_variance{};
};

/// None where two channels of a kind lie along one line.
std::optional<OrthogonalFunctions> to_orthogonal_axes(const ChannelFunctions& functions,
                                                      const ChannelAzimuths& azimuths);

}  // namespace formats::transfer_function
