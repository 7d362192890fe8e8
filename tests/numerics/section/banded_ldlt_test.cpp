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

// The largest error of systems of all small sizes and bandwidths: about those of the groups of columns, rows
// and sides that are worked on together.
double largest_error(numerics::section::Registers registers) {
  std::mt19937 random(20);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  numerics::section::BandedLdlt solver(registers);
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
  return largest;
}

TEST(Banded_ldlt, Solves_the_same_with_registers_of_any_width) {
  using numerics::section::Registers;
  for (const Registers registers : {Registers::narrow, Registers::wide, Registers::widest}) {
    EXPECT_LT(largest_error(registers), 1e-13) << static_cast<int>(registers);
  }
}

// Sides of which some begin far behind others, in whichever order, and one that is zero.
TEST(Banded_ldlt, Sides_may_begin_anywhere) {
  constexpr std::size_t n = 60;
  for (const bool reversed : {false, true}) {
    numerics::section::BandedLdlt solver;
    solver.reset(n, {0, 1, 9});
    for (std::size_t column = 0; column < n; ++column) {
      solver.add(column, 0, {3.0, 1.0});
      for (const std::size_t diagonal : {std::size_t{1}, std::size_t{2}}) {
        if (column + (diagonal == 1 ? 1 : 9) < n) {
          solver.add(column, diagonal, {-0.7, 0.2});
        }
      }
    }
    constexpr std::size_t count = 20;
    numerics::section::RightSides sides;
    sides.reset(n, count);
    std::vector<std::vector<Complex>> alone(count, std::vector<Complex>(n));
    for (std::size_t side = 1; side < count; ++side) {
      const std::size_t unknown = (reversed ? count - side : side) * 3 - 1;
      sides.add(unknown, side, {1.0, 2.0});
      alone[side][unknown] = {1.0, 2.0};
    }
    std::vector<Complex> factors_only(n);
    solver.factor_and_solve(factors_only);
    solver.solve(sides);
    for (std::size_t side = 0; side < count; ++side) {
      // The matrix times the solution is the side.
      for (std::size_t row = 0; row < n; ++row) {
        Complex sum = Complex(3.0, 1.0) * sides.value(row, side);
        for (const std::size_t away : {std::size_t{1}, std::size_t{9}}) {
          sum += row >= away ? Complex(-0.7, 0.2) * sides.value(row - away, side) : 0.0;
          sum += row + away < n ? Complex(-0.7, 0.2) * sides.value(row + away, side) : 0.0;
        }
        ASSERT_LT(std::abs(sum - alone[side][row]), 1e-13) << side << " " << row;
      }
    }
  }
}

}  // namespace
