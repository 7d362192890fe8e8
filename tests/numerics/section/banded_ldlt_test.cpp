// banded_ldlt_test.cpp: the banded solver against the product with the matrix it was given.
#include "numerics/section/banded_ldlt.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Complex = std::complex<double>;

// Sizes about those of the groups of columns and rows that are worked on together.
TEST(Banded_ldlt, Solves_systems_of_all_small_sizes_and_bandwidths) {
  std::mt19937 random(20);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  numerics::section::BandedLdlt solver;
  numerics::section::RightSides sides;
  double largest = 0.0;
  for (std::size_t n = 1; n <= 30; ++n) {
    for (std::size_t band = 0; band <= std::min<std::size_t>(n, 13); ++band) {
      std::vector<std::size_t> diagonals(band + 1);
      std::iota(diagonals.begin(), diagonals.end(), std::size_t{0});
      solver.reset(n, diagonals);
      std::vector<std::vector<Complex>> a(n, std::vector<Complex>(n));
      for (std::size_t column = 0; column < n; ++column) {
        for (std::size_t row = column; row < std::min(n, column + band + 1); ++row) {
          // Real and imaginary part dominated by their diagonals: both positive definite.
          const double diagonal = row == column ? 2.0 * static_cast<double>(band) + 1.5 : 0.0;
          const Complex value = {uniform(random) + diagonal, uniform(random) + diagonal};
          a[row][column] = a[column][row] = value;
          solver.add(column, row - column, value);
        }
      }
      std::vector<Complex> x(n);
      std::generate(x.begin(), x.end(), [&] { return Complex(uniform(random), uniform(random)); });
      std::vector<Complex> b(n);
      for (std::size_t row = 0; row < n; ++row) {
        for (std::size_t column = 0; column < n; ++column) {
          b[row] += a[row][column] * x[column];
        }
      }
      const std::size_t count = 1 + n % 3 * 10;  // right sides: multiples of one another
      sides.reset(n, count);
      for (std::size_t row = 0; row < n; ++row) {
        for (std::size_t side = 0; side < count; ++side) {
          sides.add(row, side, static_cast<double>(side) * b[row]);
        }
      }
      solver.factor_and_solve(b);
      solver.solve(sides);
      for (std::size_t i = 0; i < n; ++i) {
        largest = std::max(largest, std::abs(b[i] - x[i]));
        for (std::size_t side = 0; side < count; ++side) {
          largest = std::max(largest, std::abs(sides.value(i, side) - static_cast<double>(side) * x[i]));
        }
      }
    }
  }
  EXPECT_LT(largest, 1e-13);
}

}  // namespace
