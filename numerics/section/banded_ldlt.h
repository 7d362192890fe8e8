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

 private:
  std::size_t unknowns_ = 0;
  std::size_t half_bandwidth_ = 0;
  std::size_t stride_ = 0;  // from one column to the next
  std::vector<double> real_;
  std::vector<double> imaginary_;
};

}  // namespace numerics::section
