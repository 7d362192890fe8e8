// The spline through points, against curves that are natural splines themselves and against its own order.
#include "numerics/gridding/cubic_spline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

using namespace numerics::gridding;

namespace {

/// Largest difference from the sine over half a period, whose curvature is 0 at both ends.
double largest_error_of_sine(int intervals) {
  std::vector<double> x;
  std::vector<double> y;
  for (int i = 0; i <= intervals; ++i) {
    x.push_back(std::numbers::pi * i / intervals);
    y.push_back(std::sin(x.back()));
  }
  const CubicSpline spline = cubspl(x, y);
  double largest = 0.0;
  constexpr int places = 1000;
  for (int i = 0; i <= places; ++i) {
    const double at = std::numbers::pi * i / places;
    largest = std::max(largest, std::abs(cubval(spline, at) - std::sin(at)));
  }
  return largest;
}

TEST(Cubic_spline, Through_three_points_is_the_cubic_worked_by_hand) {
  // 3 x / 2 - x^3 / 2 up to 1, and its mirror image: slope 0 and curvature -3 in the middle.
  const CubicSpline spline = cubspl(std::vector{0.0, 1.0, 2.0}, std::vector{0.0, 1.0, 0.0});
  EXPECT_DOUBLE_EQ(spline.second_derivative[1], -3.0);
  EXPECT_DOUBLE_EQ(cubval(spline, 0.5), 0.6875);
  EXPECT_DOUBLE_EQ(cubval(spline, 1.5), 0.6875);
  EXPECT_EQ(cubval(spline, 1.0), 1.0);
}

TEST(Cubic_spline, Comes_nearer_with_the_fourth_power_of_the_spacing) {
  const double coarse = largest_error_of_sine(8);
  const double fine = largest_error_of_sine(16);
  EXPECT_LT(coarse, 5e-4);
  EXPECT_NEAR(coarse / fine, 16.0, 1.5);
}

TEST(Cubic_spline, Keeps_a_straight_line_with_uneven_spacing_and_level_ground_to_the_last_digit) {
  const std::vector<double> x{-300.0, 0.1, 7.0, 5000.0, 5001.0};
  std::vector<double> line(x.size());
  std::ranges::transform(x, line.begin(), [](double at) { return 12.0 + 0.25 * at; });
  const CubicSpline slope = cubspl(x, line);
  const CubicSpline level = cubspl(x, std::vector(x.size(), 612.7));
  for (const double at : {-299.0, 3.3, 1234.5, 5000.5}) {
    EXPECT_NEAR(cubval(slope, at), 12.0 + 0.25 * at, 1e-9);
    EXPECT_EQ(cubval(level, at), 612.7);
  }
}

TEST(Cubic_spline, Stays_at_the_end_points_beyond_them) {
  const CubicSpline spline = cubspl(std::vector{0.0, 1.0, 2.0, 3.0}, std::vector{5.0, -8.0, 90.0, 6.0});
  EXPECT_EQ(cubval(spline, -1e9), 5.0);
  EXPECT_EQ(cubval(spline, 1e9), 6.0);
  EXPECT_EQ(cubval(spline, std::numeric_limits<double>::infinity()), 6.0);
  EXPECT_TRUE(std::isnan(cubval(spline, std::numeric_limits<double>::quiet_NaN())));
  const CubicSpline point = cubspl(std::vector{4.0}, std::vector{7.0});
  EXPECT_EQ(cubval(point, 3.0), 7.0);
  EXPECT_EQ(cubval(point, 5.0), 7.0);
}

TEST(Cubic_spline, Refuses_points_that_make_no_curve) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::vector<double> none;
  EXPECT_THROW(cubspl(none, none), std::invalid_argument);
  EXPECT_THROW(cubspl(std::vector{1.0, 2.0}, std::vector{1.0}), std::invalid_argument);
  EXPECT_THROW(cubspl(std::vector{1.0, 1.0}, std::vector{1.0, 2.0}), std::invalid_argument);
  EXPECT_THROW(cubspl(std::vector{2.0, 1.0}, std::vector{1.0, 2.0}), std::invalid_argument);
  EXPECT_THROW(cubspl(std::vector{1.0, infinity}, std::vector{1.0, 2.0}), std::invalid_argument);
  EXPECT_THROW(cubspl(std::vector{0.0, 1e-310}, std::vector{9.0, -1.0}), std::invalid_argument);
  EXPECT_THROW(cubspl(std::vector{0.0, 1e-300, 1.0}, std::vector{0.0, 1e300, 0.0}), std::invalid_argument);
}

}  // namespace
