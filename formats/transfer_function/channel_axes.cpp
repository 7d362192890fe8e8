#include "formats/transfer_function/channel_axes.h"

#include <cmath>
#include <numbers>

namespace formats::transfer_function {

namespace {

constexpr double degrees_in_radian = 180.0 / std::numbers::pi;
constexpr double least_determinant = 0.05;  // the sine of some 3 degrees: two channels along one line

using RealMatrix = std::array<std::array<double, 2>, 2>;
using ComplexMatrix = std::array<std::array<Complex, 2>, 2>;

/// The directions of two channels, a row each.
RealMatrix directions(const std::array<double, 2>& azimuths) {
  RealMatrix rows{};
  for (std::size_t i = 0; i < 2; ++i) {
    const double angle = azimuths[i] / degrees_in_radian;
    rows[i] = {std::cos(angle), std::sin(angle)};
  }
  return rows;
}

double determinant(const RealMatrix& m) { return m[0][0] * m[1][1] - m[0][1] * m[1][0]; }

RealMatrix inverse(const RealMatrix& m) {
  const double d = determinant(m);
  return {{{m[1][1] / d, -m[0][1] / d}, {-m[1][0] / d, m[0][0] / d}}};
}

RealMatrix transposed(const RealMatrix& m) { return {{{m[0][0], m[1][0]}, {m[0][1], m[1][1]}}}; }

ComplexMatrix product(const RealMatrix& left, const ComplexMatrix& m, const RealMatrix& right) {
  ComplexMatrix result{};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      for (std::size_t k = 0; k < 2; ++k) {
        for (std::size_t l = 0; l < 2; ++l) {
          result[i][j] += left[i][k] * m[k][l] * right[l][j];
        }
      }
    }
  }
  return result;
}

}  // namespace

std::optional<OrthogonalFunctions> to_orthogonal_axes(const ChannelFunctions& functions,
                                                      const ChannelAzimuths& azimuths) {
  const RealMatrix U = directions(azimuths.magnetic);
  const RealMatrix V = directions(azimuths.electric);
  if (std::abs(determinant(U)) < least_determinant || std::abs(determinant(V)) < least_determinant) {
    return std::nullopt;
  }
  const RealMatrix V_inverse = inverse(V);
  OrthogonalFunctions result;
  result.impedance = product(V_inverse, functions.impedance, U);
  const ComplexMatrix power = product(transposed(U), functions.inverse_power, U);
  const ComplexMatrix residuals = product(V_inverse, functions.electric_residuals, transposed(V_inverse));
  for (std::size_t j = 0; j < 2; ++j) {
    for (std::size_t i = 0; i < 2; ++i) {
      result.tipper[j] += functions.tipper[i] * U[i][j];
      result.impedance_variance[i][j] = residuals[i][i].real() * power[j][j].real();
    }
    result.tipper_variance[j] = functions.vertical_residual * power[j][j].real();
  }
  return result;
}

}  // namespace formats::transfer_function
