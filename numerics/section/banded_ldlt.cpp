#include "numerics/section/banded_ldlt.h"

#include <utility>

#include "numerics/section/banded_kernels.h"
#include "numerics/section/banded_panels.h"
#include "numerics/section/banded_sides.h"

namespace numerics::section {

void RightSides::reset(std::size_t unknowns, std::size_t count) {
  const std::size_t strips = (count + strip - 1) / strip;
  stride_ = strips * strip;
  const std::size_t size = round_up(unknowns) * stride_;
  for (AlignedNumbers* part : {&real_, &imaginary_}) {
    part->resize(size);
    std::fill_n(part->data(), size, 0.0);
  }
  first_unknown_.assign(strips, no_unknown);
}

void RightSides::add_products(const std::array<std::complex<double>, 4>& factors,
                              const std::array<std::size_t, 4>& unknowns, double* real_sums,
                              double* imaginary_sums) const {
  Products products = {{}, {}, {real_sums, imaginary_sums}};
  for (std::size_t i = 0; i < factors.size(); ++i) {
    products.factors[i] = {factors[i].real(), factors[i].imag()};
    const std::size_t at = unknowns[i] * stride_;
    products.values[i] = {real_.data() + at, imaginary_.data() + at};
  }
  kernels(Registers::widest).add_products(products, stride_);
}

void BandedLdlt::reset(std::size_t unknowns, std::vector<std::size_t> diagonals) {
  unknowns_ = unknowns;
  diagonals_ = std::move(diagonals);
  half_bandwidth_ = diagonals_.back();
  entries_.assign(unknowns * diagonals_.size(), {});
  const std::size_t size = round_up(unknowns) * round_up(panel + half_bandwidth_);
  real_.resize(size);
  imaginary_.resize(size);
}

void BandedLdlt::factor_and_solve(std::span<std::complex<double>> right_side) {
  const std::size_t columns = round_up(unknowns_);
  const std::size_t height = round_up(panel + half_bandwidth_);
  const Panels panels = {real_.data(), imaginary_.data(), columns, half_bandwidth_, height};
  AlignedNumbers real;
  AlignedNumbers imaginary;
  real.resize(columns + height);
  imaginary.resize(columns + height);
  std::fill_n(real.data() + unknowns_, columns + height - unknowns_, 0.0);
  std::fill_n(imaginary.data() + unknowns_, columns + height - unknowns_, 0.0);
  for (std::size_t i = 0; i < unknowns_; ++i) {
    real.data()[i] = right_side[i].real();
    imaginary.data()[i] = right_side[i].imag();
  }
  const Values side = {real.data(), imaginary.data()};
  kernels(registers_).factor(panels, side, {panels, diagonals_, entries_});
  kernels(registers_)
      .substitute_back({real_.data(), imaginary_.data(), columns, half_bandwidth_, height}, side);
  for (std::size_t i = 0; i < unknowns_; ++i) {
    right_side[i] = {side.real[i], side.imaginary[i]};
  }
}

void BandedLdlt::solve(RightSides& sides) const {
  const Factors factors = {real_.data(), imaginary_.data(), round_up(unknowns_), half_bandwidth_,
                           round_up(panel + half_bandwidth_)};
  const std::vector<std::size_t>& first = sides.first_unknown_;
  for (std::size_t i = 0; i < first.size(); i += 2) {
    const Values strips = {sides.real_.data() + i * strip, sides.imaginary_.data() + i * strip};
    const std::size_t second = i + 1 < first.size() ? first[i + 1] : no_unknown;
    kernels(registers_).solve_sides(factors, strips, sides.stride_, first[i], second);
  }
}

}  // namespace numerics::section
