#include "numerics/impedance/mtcomp.h"

#include <algorithm>
#include <cmath>
#include <complex>

#include <Eigen/Dense>

#include "core/absent_value.h"
#include "numerics/constants.h"

namespace numerics::impedance {

namespace {

using Complex = std::complex<double>;
using Eigen::Matrix2cd;
using Eigen::Matrix2d;
using Eigen::RowVector2cd;

constexpr double taken_by_row = 2.0;  // averages that the two complex elements of a row take

// Field files print six digits. A determinant that is smaller than this share of its products is their
// rounding.
constexpr double min_determinant = 1e-6;

bool is_sound(const CrossSpectra& spectra) {
  const SpectraChannels& c = spectra.channels;
  const std::size_t last = std::max({c.hx, c.hy, c.ex, c.ey, c.reference_x, c.reference_y, c.hz.value_or(0)});
  return last < spectra.channel_count &&
         spectra.matrix.size() == spectra.channel_count * spectra.channel_count &&
         std::isfinite(spectra.rotation) &&
         std::all_of(spectra.matrix.begin(), spectra.matrix.end(), [](double v) { return std::isfinite(v); });
}

Complex cross_power(const CrossSpectra& spectra, std::size_t a, std::size_t b) {
  const auto value = [&](std::size_t row, std::size_t column) {
    return spectra.matrix[row * spectra.channel_count + column];
  };
  if (a == b) {
    return value(a, a);
  }
  return a < b ? Complex(value(b, a), -value(a, b)) : Complex(value(a, b), value(b, a));
}

using Pair = std::array<std::size_t, 2>;

Matrix2cd cross_powers(const CrossSpectra& spectra, const Pair& rows, const Pair& columns) {
  Matrix2cd powers;
  for (Eigen::Index row = 0; row < 2; ++row) {
    for (Eigen::Index column = 0; column < 2; ++column) {
      powers(row, column) = cross_power(spectra, rows[static_cast<std::size_t>(row)],
                                        columns[static_cast<std::size_t>(column)]);
    }
  }
  return powers;
}

// From the turned axes back to those of the channel definitions.
Matrix2d turn_back(double clockwise_degrees) {
  const double angle = clockwise_degrees * radians_per_degree;
  Matrix2d turn;
  turn << std::cos(angle), -std::sin(angle), std::sin(angle), std::cos(angle);
  return turn;
}

bool is_singular(const Matrix2cd& m) {
  const Complex first = m(0, 0) * m(1, 1);
  const Complex second = m(0, 1) * m(1, 0);
  // Negated so that a NaN counts as singular.
  return !(std::abs(first - second) > min_determinant * (std::abs(first) + std::abs(second)));
}

template <std::size_t size>
void put(std::array<float, size>& parts, std::size_t place, Complex value) {
  parts[place] = static_cast<float>(value.real());
  parts[place + 1] = static_cast<float>(value.imag());
}

constexpr double largest = 1e30;  // beyond it a number marks an absent value

template <class Matrix>
bool fits_single(const Matrix& z) {
  return z.allFinite() && z.cwiseAbs().maxCoeff() <= largest;
}

float single(double value) { return value <= largest ? static_cast<float>(value) : no_data; }

// The solver holds the transpose of S_HR.
using Solver = Eigen::PartialPivLU<Matrix2cd>;

// The diagonal of S_HR^-H S_RR S_HR^-1.
std::array<double, 2> spread_of(const CrossSpectra& spectra, const Solver& solver) {
  const Pair reference{spectra.channels.reference_x, spectra.channels.reference_y};
  const Matrix2cd half = solver.solve(cross_powers(spectra, reference, reference).conjugate()).conjugate();
  const Matrix2cd spread = solver.solve(half.transpose()).transpose();
  return {std::max(0.0, spread(0, 0).real()), std::max(0.0, spread(1, 1).real())};
}

// The standard error of a part of an element; no_data where nothing is known of it.
float error_of(const CrossSpectra& spectra, double residual, double spread) {
  return spectra.averages > taken_by_row
             ? single(std::sqrt(residual / (2.0 * (spectra.averages - taken_by_row)) * spread))
             : no_data;
}

// Coherence and errors of the tensor z.
void take_errors(const CrossSpectra& spectra, const Matrix2cd& z, const std::array<double, 2>& spread,
                 TensorEstimate& estimate) {
  const SpectraChannels& c = spectra.channels;
  const Pair electric{c.ex, c.ey};
  const Pair magnetic{c.hx, c.hy};
  const Matrix2d turn = turn_back(spectra.rotation);
  const Matrix2cd electric_powers = turn * cross_powers(spectra, electric, electric) * turn.transpose();
  const Matrix2cd magnetic_powers = turn * cross_powers(spectra, magnetic, magnetic) * turn.transpose();
  const Matrix2cd electric_magnetic = turn * cross_powers(spectra, electric, magnetic) * turn.transpose();
  const Matrix2cd predicted = z * electric_magnetic.adjoint();
  const Matrix2cd residuals =
      electric_powers - predicted - predicted.adjoint() + z * magnetic_powers * z.adjoint();
  double coherence = 1.0;
  for (Eigen::Index row = 0; row < 2; ++row) {
    const double power = electric_powers(row, row).real();
    const double residual = std::max(0.0, residuals(row, row).real());
    coherence = std::min(coherence, power > 0.0 ? std::max(0.0, 1.0 - residual / power) : 0.0);
    for (std::size_t column = 0; column < 2; ++column) {
      estimate.errors[2 * static_cast<std::size_t>(row) + column] =
          error_of(spectra, residual, spread[column]);
    }
  }
  estimate.coherence = static_cast<float>(coherence);
}

// Hz as one more row. Its channel has no direction in the plane, so that only the magnetic axes are turned
// back.
void take_tipper(const CrossSpectra& spectra, const Solver& solver, const std::array<double, 2>& spread,
                 TensorEstimate& estimate) {
  const SpectraChannels& c = spectra.channels;
  const std::size_t hz = *c.hz;
  const auto with_hz = [&](std::size_t x, std::size_t y) {
    return RowVector2cd(cross_power(spectra, hz, x), cross_power(spectra, hz, y));
  };
  const RowVector2cd tipper = solver.solve(with_hz(c.reference_x, c.reference_y).transpose()).transpose();
  if (!fits_single(tipper)) {
    return;
  }
  put(estimate.tipper, 0, tipper(0));
  put(estimate.tipper, 2, tipper(1));
  const Matrix2d turn = turn_back(spectra.rotation);
  const Pair magnetic{c.hx, c.hy};
  const Matrix2cd magnetic_powers = turn * cross_powers(spectra, magnetic, magnetic) * turn.transpose();
  const RowVector2cd hz_magnetic = with_hz(c.hx, c.hy) * turn.transpose();
  const Complex predicted = (tipper * hz_magnetic.adjoint())(0);
  const Complex of_tipper = (tipper * magnetic_powers * tipper.adjoint())(0);
  const double residual =
      std::max(0.0, cross_power(spectra, hz, hz).real() - 2.0 * predicted.real() + of_tipper.real());
  for (std::size_t component = 0; component < 2; ++component) {
    estimate.tipper_errors[component] = error_of(spectra, residual, spread[component]);
  }
}

}  // namespace

MtcompError mtcomp(const CrossSpectra& spectra, TensorEstimate& estimate) {
  // Negated so that a NaN counts as bad.
  if (!(spectra.frequency > 0.0)) {
    return MtcompError::bad_frequency;
  }
  if (!is_sound(spectra)) {
    return MtcompError::bad_matrix;
  }
  const SpectraChannels& c = spectra.channels;
  const Pair electric{c.ex, c.ey};
  const Pair magnetic{c.hx, c.hy};
  const Pair reference{c.reference_x, c.reference_y};
  const Matrix2d turn = turn_back(spectra.rotation);
  const Matrix2cd magnetic_reference = turn * cross_powers(spectra, magnetic, reference);
  const Matrix2cd electric_reference = turn * cross_powers(spectra, electric, reference);
  if (is_singular(magnetic_reference)) {
    return MtcompError::singular;
  }
  // Z A = B is solved as A^T Z^T = B^T.
  const Solver solver(magnetic_reference.transpose());
  const Matrix2cd z = solver.solve(electric_reference.transpose()).transpose();
  if (!fits_single(z)) {
    return MtcompError::singular;
  }

  TensorEstimate result;
  result.tipper.fill(no_data);
  result.tipper_errors.fill(no_data);
  const std::array<double, 2> spread = spread_of(spectra, solver);
  take_errors(spectra, z, spread, result);
  if (c.hz) {
    take_tipper(spectra, solver, spread, result);
  }
  put(result.impedance, 0, z(0, 0));
  put(result.impedance, 2, z(0, 1));
  put(result.impedance, 4, std::sqrt(z(0, 0) * z(1, 1) - z(0, 1) * z(1, 0)));
  put(result.impedance, 6, z(1, 0));
  put(result.impedance, 8, z(1, 1));
  estimate = result;
  return MtcompError::none;
}

}  // namespace numerics::impedance
