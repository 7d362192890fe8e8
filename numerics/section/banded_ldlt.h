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
#include <memory>
#include <new>
#include <span>
#include <vector>

namespace numerics::section {

/// Numbers at the beginning of a cache line, so that no register is loaded from two of them. Memory only
/// grows, and what is in it after a resize is anything.
class AlignedNumbers {
 public:
  void resize(std::size_t size) {
    if (size > size_) {
      numbers_.reset(static_cast<double*>(::operator new[](size * sizeof(double), line)));
      size_ = size;
    }
  }
  [[nodiscard]] double* data() const { return numbers_.get(); }

 private:
  static constexpr std::align_val_t line{64};
  struct Free {
    void operator()(double* numbers) const { ::operator delete[](numbers, line); }
  };
  std::unique_ptr<double[], Free> numbers_;
  std::size_t size_ = 0;
};

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

  static constexpr std::size_t strip = 8;  // sides that are worked on together at least

 private:
  friend class BandedLdlt;
  std::size_t stride_ = 0;
  AlignedNumbers real_;
  AlignedNumbers imaginary_;
  std::vector<std::size_t> first_unknown_;  // that has a value, of each strip
};

class BandedLdlt {
 public:
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
  std::size_t unknowns_ = 0;
  std::size_t half_bandwidth_ = 0;
  std::vector<std::size_t> diagonals_;
  std::vector<std::complex<double>> entries_;  // of each column, by diagonal
  AlignedNumbers real_;                        // the factors, by panels
  AlignedNumbers imaginary_;
};

}  // namespace numerics::section
