// banded_ldlt.h: solves a banded complex symmetric system.
//
// A = L D L^T with the plain transpose and no pivoting. That is safe where real and imaginary part of A are
// both positive semidefinite and their sum is definite, as in the diffusion of electromagnetic fields:
// elimination keeps the property and the elements grow by less than a factor of 3 (Higham 1998, Math. Comp.
// 67, 1591-1599).
//
// Real and imaginary parts lie in arrays of their own, so that the update, where nearly all time goes,
// vectorises.
#pragma once
#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace numerics::section {

/// Several right sides, the values of one unknown beside one another, so that all of them are solved at the
/// price of reading the factors once.
class RightSides {
 public:
  /// All zero; the count is rounded up to whole registers.
  RightSides(std::size_t unknowns, std::size_t count);

  void add(std::size_t unknown, std::size_t side, std::complex<double> value) {
    real_[unknown * stride_ + side] += value.real();
    imaginary_[unknown * stride_ + side] += value.imag();
  }
  /// From one unknown to the next.
  [[nodiscard]] std::size_t stride() const { return stride_; }
  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] const double* real(std::size_t unknown) const { return real_.data() + unknown * stride_; }
  [[nodiscard]] const double* imaginary(std::size_t unknown) const {
    return imaginary_.data() + unknown * stride_;
  }
  [[nodiscard]] std::complex<double> value(std::size_t unknown, std::size_t side) const {
    return {real_[unknown * stride_ + side], imaginary_[unknown * stride_ + side]};
  }

 private:
  friend class BandedLdlt;
  std::size_t count_;
  std::size_t stride_;
  std::vector<double> real_;
  std::vector<double> imaginary_;
};

class BandedLdlt {
 public:
  /// Starts a system of zeros; keeps the memory of the one before.
  /// @param half_bandwidth  entries of a column below its diagonal
  void reset(std::size_t unknowns, std::size_t half_bandwidth);

  /// Adds to A(column + below, column); below <= half_bandwidth.
  void add(std::size_t column, std::size_t below, std::complex<double> value) {
    const std::size_t at = column * stride_ + below;
    real_[at] += value.real();
    imaginary_[at] += value.imag();
  }

  /// Replaces A by its factors.
  void factor();

  /// Replaces the right side by the solution; after factor(). A pivot of zero gives values that are not
  /// finite.
  /// @param right_side  length unknowns
  void solve(std::span<std::complex<double>> right_side) const;

  /// The same for several right sides, four at a time, each four from the first unknown on that one of them
  /// has: right sides of one region are best beside one another.
  void solve(RightSides& sides) const;

 private:
  [[nodiscard]] std::size_t first_unknown(const RightSides& sides, std::size_t strip) const;

  std::size_t unknowns_ = 0;
  std::size_t half_bandwidth_ = 0;
  std::size_t stride_ = 0;  // from one column to the next
  std::vector<double> real_;
  std::vector<double> imaginary_;
};

}  // namespace numerics::section
