#include "numerics/section/layered_field.h"

#include <cmath>

namespace numerics::section {

namespace {

// exp(z) - 1, to full precision also where z is small
Complex expm1(Complex z) {
  const double half_sine = std::sin(0.5 * z.imag());
  return {std::expm1(z.real()) * std::cos(z.imag()) - 2.0 * half_sine * half_sine,
          std::exp(z.real()) * std::sin(z.imag())};
}

// sqrt(i omega mu (sigma + i omega epsilon)), 1/m
Complex wave_number(const Frequency& frequency, double conductivity) {
  return std::sqrt(Complex(0.0, frequency.omega_mu()) * frequency.admittivity(conductivity));
}

}  // namespace

LayeredField::LayeredField(const Frequency& frequency, std::span<const double> heights,
                           std::span<const double> conductivity)
    : frequency_(frequency),
      heights_(heights.begin(), heights.end()),
      wave_number_(heights.size()),
      electric_(heights.size() + 1) {
  const std::size_t rows = heights.size();
  std::vector<Complex> zeta(rows);
  for (std::size_t row = 0; row < rows; ++row) {
    wave_number_[row] = wave_number(frequency, conductivity[row]);
    zeta[row] = Complex(0.0, frequency.omega_mu()) / wave_number_[row];
  }
  std::vector<Complex> impedance(rows + 1);
  std::vector<Complex> passed(rows);  // E at a row's bottom over E at its top
  impedance[rows] = zeta[rows - 1];
  for (std::size_t row = rows; row-- > 0;) {
    const Complex below = impedance[row + 1];
    const Complex difference = -expm1(-2.0 * wave_number_[row] * heights[row]);
    const Complex sum = 2.0 - difference;
    const Complex denominator = below * sum + zeta[row] * difference;
    impedance[row] = zeta[row] * denominator / (zeta[row] * sum + below * difference);
    passed[row] = 2.0 * std::exp(-wave_number_[row] * heights[row]) * below / denominator;
  }
  electric_[0] = 1.0;
  magnetic_.push_back(1.0 / impedance[0]);
  for (std::size_t row = 0; row < rows; ++row) {
    electric_[row + 1] = electric_[row] * passed[row];
    magnetic_.push_back(electric_[row + 1] / impedance[row + 1]);
  }
}

LayeredField::Value LayeredField::inside(std::size_t row, double depth) const {
  const Complex k = wave_number_[row];
  const double height = heights_[row];
  // sinh(k s) / sinh(k h) without growing exponentials
  const auto share = [k, height](double s) {
    return std::exp(-k * (height - s)) * expm1(-2.0 * k * s) / expm1(-2.0 * k * height);
  };
  const Complex top = share(height - depth);
  const Complex bottom = share(depth);
  return {electric_[row] * top + electric_[row + 1] * bottom,
          magnetic_[row] * top + magnetic_[row + 1] * bottom};
}

LayeredField::Value LayeredField::above(double height) const {
  const Complex k = wave_number(frequency_, air_conductivity);
  const Complex zeta = Complex(0.0, frequency_.omega_mu()) / k;
  const Complex cosine = std::cosh(k * height);
  const Complex sine = std::sinh(k * height);
  return {electric_[0] * cosine + magnetic_[0] * zeta * sine,
          magnetic_[0] * cosine + electric_[0] / zeta * sine};
}

}  // namespace numerics::section
