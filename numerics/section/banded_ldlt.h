// banded_ldlt.h: solves a banded complex symmetric system whose entries lie on a few diagonals.
//
// A = L D L^T with the plain transpose and no pivoting. That is safe where real and imaginary part of A are
// both positive semidefinite and their sum is definite, as in the diffusion of electromagnetic fields:
// elimination keeps the property and the elements grow by less than a factor of 3 (Higham 1998, Math. Comp.
// 67, 1591-1599).
//
// Real and imaginary parts lie in arrays of their own, so that everything vectorises.
#pragma once
#include <algorithm>
#include <array>
#include <complex>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "numerics/section/aligned_numbers.h"
#include "numerics/section/registers.h"

namespace numerics::section {

/// Several right sides, the values of one unknown beside one another, so that all of them are solved at the
/// price of reading the factors once.
class RightSides {
 public:
  /// Makes all values zero; the stride is the count rounded up to whole registers.
  void reset(std::size_t unknowns, std::size_t count);

  void add(std::size_t unknown, std::size_t side, std::complex<double> value) {
    real_.data()[unknown * stride_ + side] += value.real();
    imaginary_.data()[unknown * stride_ + side] += value.imag();
    std::size_t& first = first_unknown_[side / strip];
    first = std::min(first, unknown);
  }
  /// From one unknown to the next.
  [[nodiscard]] std::size_t stride() const { return stride_; }
  [[nodiscard]] const double* real(std::size_t unknown) const { return real_.data() + unknown * stride_; }
  [[nodiscard]] const double* imaginary(std::size_t unknown) const {
    return imaginary_.data() + unknown * stride_;
  }
  [[nodiscard]] std::complex<double> value(std::size_t unknown, std::size_t side) const {
    return {real(unknown)[side], imaginary(unknown)[side]};
  }

  /// Adds the factors times the values at some unknowns to sums, of all sides. Length of the sums: stride
  void add_products(const std::array<std::complex<double>, 4>& factors,
                    const std::array<std::size_t, 4>& unknowns, double* real_sums,
                    double* imaginary_sums) const;

 private:
  friend class BandedLdlt;
  std::size_t stride_ = 0;
  AlignedNumbers real_;
  AlignedNumbers imaginary_;
  std::vector<std::size_t> first_unknown_;  // that has a value, of each strip
};

class BandedLdlt {
 public:
  /// @param registers  used where the processor has them, else the next narrower ones
  explicit BandedLdlt(Registers registers = Registers::widest) : registers_(registers) {}

  /// Starts a system of zeros; keeps the memory of the one before.
  /// @param diagonals  those that have entries, by their distance below the main one, which comes first;
  /// ascending
  void reset(std::size_t unknowns, std::vector<std::size_t> diagonals);

  /// Adds to A(column + diagonals[diagonal], column), which must be in the matrix.
  void add(std::size_t column, std::size_t diagonal, std::complex<double> value) {
    entries_[column * diagonals_.size() + diagonal] += value;
  }

  /// Replaces A by its factors and a right side by the solution: it is eliminated along with the columns,
  /// while they are in the cache. A pivot of zero gives values that are not finite.
  /// @param right_side  length unknowns
  void factor_and_solve(std::span<std::complex<double>> right_side);

  /// Replaces several right sides by the solutions; after factor_and_solve. The elimination begins at the
  /// first unknown that one of some sides has: those of one region are best beside one another.
  void solve(RightSides& sides) const;

 private:
  Registers registers_;
  std::size_t unknowns_ = 0;
  std::size_t half_bandwidth_ = 0;
  std::vector<std::size_t> diagonals_;
  std::vector<std::complex<double>> entries_;  // of each column, by diagonal
  AlignedNumbers real_;                        // the factors, by panels
  AlignedNumbers imaginary_;
};

}  // namespace numerics::section
