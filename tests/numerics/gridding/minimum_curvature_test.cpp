// minimum_curvature_test.cpp: surfaces against a direct solution, closed forms and what must not change them.
#include "numerics/gridding/minimum_curvature.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/numerics/gridding/direct_plate.h"

namespace {

using namespace numerics::gridding;
using numerics::gridding::GridFrame;
using Points = std::vector<ScatteredPoint>;

GriddedSurface grid_of(const Points& points, const GridFrame& frame, const GriddingOptions& options = {}) {
  return minimum_curvature(points, frame, options).value();
}

GridFrame unit_frame(std::size_t columns, std::size_t rows) { return {0.0, 0.0, 1.0, columns, rows}; }

// Franke (1982), Math. Comp. 38, 181-200: two hills, a hollow and a slope on the unit square.
double hills(double x, double y) {
  const auto bell = [](double a, double b) { return std::exp(-(a * a + b * b)); };
  return 0.75 * bell((9 * x - 2) / 2, (9 * y - 2) / 2) +
         0.75 * std::exp(-(9 * x + 1) * (9 * x + 1) / 49 - (9 * y + 1) / 10) +
         0.5 * bell((9 * x - 7) / 2, (9 * y - 3) / 2) - 0.2 * bell(9 * x - 4, 9 * y - 7);
}

Points random_points(std::size_t count, unsigned seed, double (*surface)(double, double),
                     const GridFrame& frame) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  Points points;
  while (points.size() < count) {
    const double x = uniform(random);
    const double y = uniform(random);
    points.push_back({frame.first_x + x * frame.cell * static_cast<double>(frame.columns - 1),
                      frame.first_y + y * frame.cell * static_cast<double>(frame.rows - 1), surface(x, y)});
  }
  return points;
}

double range_of(const Points& points) {
  const auto [low, high] = std::minmax_element(points.begin(), points.end(),
                                               [](const auto& a, const auto& b) { return a.z < b.z; });
  return high->z - low->z;
}

double largest_difference(const std::vector<double>& a, const std::vector<double>& b) {
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    largest = std::max(largest, std::abs(a[i] - b[i]));
  }
  return largest;
}

// No two points nearest to one node: the direct solution doesn't merge them.
Points apart(Points points, const GridFrame& frame) {
  std::vector<bool> taken(frame.columns * frame.rows);
  std::erase_if(points, [&](const ScatteredPoint& point) {
    const auto node = static_cast<std::size_t>(std::lround(point.y)) * frame.columns +
                      static_cast<std::size_t>(std::lround(point.x));
    const bool earlier = taken[node];
    taken[node] = true;
    return earlier;
  });
  return points;
}

TEST(Minimum_curvature, Is_the_surface_of_a_direct_solution) {
  const GridFrame frame = unit_frame(30, 20);
  for (const std::size_t count : {5U, 12U, 48U}) {
    for (const unsigned seed : {1U, 2U, 3U}) {
      SCOPED_TRACE(testing::Message() << count << " points, set " << seed);
      const Points points = apart(random_points(count, seed, hills, frame), frame);
      const std::vector<double> exact = direct_plate(points, frame);
      constexpr double no_refit = 1e9;
      const GriddedSurface usual = grid_of(points, frame, {.largest_misfit = no_refit});
      EXPECT_LT(largest_difference(usual.grid.values, exact), 1.5e-3 * range_of(points));
      const GriddedSurface close = grid_of(points, frame, {.stop_change = 1e-6, .largest_misfit = no_refit});
      EXPECT_LT(largest_difference(close.grid.values, exact), 2e-5 * range_of(points));
      EXPECT_TRUE(usual.converged && close.converged);
    }
  }
}

TEST(Minimum_curvature, Follows_a_smooth_function_as_closely_as_the_direct_solution) {
  const GridFrame frame = unit_frame(100, 100);
  for (const unsigned seed : {1U, 2U}) {
    const Points points = random_points(2500, seed, hills, frame);
    const std::vector<double> found = grid_of(points, frame).grid.values;
    const std::vector<double> exact = direct_plate(apart(points, frame), frame);
    double squares = 0.0;
    double exact_squares = 0.0;
    for (std::size_t row = 5; row < 95; ++row) {
      for (std::size_t column = 5; column < 95; ++column) {
        const double truth = hills(static_cast<double>(column) / 99.0, static_cast<double>(row) / 99.0);
        squares += std::pow(found[row * 100 + column] - truth, 2);
        exact_squares += std::pow(exact[row * 100 + column] - truth, 2);
      }
    }
    RecordProperty("rms", std::to_string(std::sqrt(squares / 8100.0)));
    RecordProperty("rms_direct", std::to_string(std::sqrt(exact_squares / 8100.0)));
    EXPECT_LT(std::sqrt(squares), 1.2 * std::sqrt(exact_squares));
    EXPECT_LT(std::sqrt(squares / 8100.0), 2e-4);
  }
}

// Between lines of fixed nodes the plate is a cylinder, whose cut is the natural cubic spline.
TEST(Minimum_curvature, Bends_like_a_spline_between_fixed_lines) {
  const GridFrame frame = unit_frame(41, 30);
  Points points;
  for (int row = 0; row < 30; ++row) {
    points.insert(points.end(), {{0.0, 1.0 * row, 0.0}, {20.0, 1.0 * row, 1.0}, {40.0, 1.0 * row, 0.0}});
  }
  const std::vector<double> found = grid_of(points, frame).grid.values;
  for (std::size_t node = 0; node < found.size(); ++node) {
    const double column = static_cast<double>(node % 41);
    const double s = std::min(column, 40.0 - column) / 20.0;
    EXPECT_NEAR(found[node], 1.5 * s - 0.5 * s * s * s, 5e-4) << node;
  }
}

TEST(Minimum_curvature, Keeps_planes_and_quadratics) {
  const GridFrame frame = {1000.0, -500.0, 20.0, 300, 300};
  const auto plane = [](double x, double y) { return 3.0 - 7.0 * x + 0.5 * y; };
  const std::vector<double> flat = grid_of(random_points(300, 1, plane, frame), frame).grid.values;
  const auto bowl = [](double x, double y) { return x * x - 0.5 * x * y + 2.0 * y * y; };
  const Points points = random_points(10000, 2, bowl, frame);
  const std::vector<double> curved = grid_of(points, frame).grid.values;
  const double range = range_of(points);
  for (std::size_t node = 0; node < flat.size(); ++node) {
    const std::size_t column = node % 300;
    const std::size_t row = node / 300;
    const double x = static_cast<double>(column) / 299.0;
    const double y = static_cast<double>(row) / 299.0;
    EXPECT_NEAR(flat[node], plane(x, y), 1e-12 * 10.0);
    // The edge of a free plate doesn't bend.
    const bool inner = std::min({column, row, 299 - column, 299 - row}) >= 50;
    EXPECT_NEAR(curved[node], bowl(x, y), (inner ? 5e-5 : 1e-3) * range) << column << ", " << row;
  }
}

TEST(Minimum_curvature, Nodes_under_points_take_their_values_to_the_bit) {
  const GridFrame frame = unit_frame(40, 30);
  std::mt19937 random(5);
  std::normal_distribution<double> noise(100.0, 30.0);
  Points points;
  for (int k = 0; k < 200; ++k) {
    points.push_back({static_cast<double>(k * 7 % 40), static_cast<double>(k * 11 % 30), noise(random)});
  }
  points = apart(points, frame);
  const std::vector<double> found = grid_of(points, frame).grid.values;
  for (const ScatteredPoint& point : points) {
    EXPECT_EQ(found[static_cast<std::size_t>(point.y) * 40 + static_cast<std::size_t>(point.x)], point.z);
  }
}

TEST(Minimum_curvature, Scale_order_and_orientation_dont_matter) {
  const GridFrame frame = unit_frame(60, 45);
  const Points points = random_points(150, 4, hills, frame);
  const std::vector<double> found = grid_of(points, frame).grid.values;
  const double range = range_of(points);
  const auto changed = [&](auto change) {
    Points result = points;
    std::for_each(result.begin(), result.end(), change);
    return result;
  };

  std::vector<double> scaled = grid_of(changed([](auto& p) { p.z *= 1024.0; }), frame).grid.values;
  std::for_each(scaled.begin(), scaled.end(), [](double& z) { z /= 1024.0; });
  EXPECT_EQ(scaled, found);
  std::vector<double> moved =
      grid_of(changed([](auto& p) { p.z = 1000.0 * p.z + 50000.0; }), frame).grid.values;
  std::for_each(moved.begin(), moved.end(), [](double& z) { z = (z - 50000.0) / 1000.0; });
  EXPECT_LT(largest_difference(moved, found), 2e-4 * range);
  Points reversed = points;
  std::reverse(reversed.begin(), reversed.end());
  EXPECT_LT(largest_difference(grid_of(reversed, frame).grid.values, found), 2e-4 * range);

  const std::vector<double> swapped =
      grid_of(changed([](auto& p) { std::swap(p.x, p.y); }), unit_frame(45, 60)).grid.values;
  const std::vector<double> mirrored = grid_of(changed([](auto& p) { p.x = 59.0 - p.x; }), frame).grid.values;
  for (std::size_t row = 0; row < 45; ++row) {
    for (std::size_t column = 0; column < 60; ++column) {
      EXPECT_NEAR(swapped[column * 45 + row], found[row * 60 + column], 2e-4 * range);
      EXPECT_NEAR(mirrored[row * 60 + 59 - column], found[row * 60 + column], 2e-3 * range);
    }
  }
}

TEST(Minimum_curvature, Noise_is_fitted_and_contradictions_stay_calm) {
  const GridFrame frame = unit_frame(200, 150);
  std::mt19937 random(6);
  std::normal_distribution<double> noise(0.0, 0.02);
  Points lines;
  for (int line = 0; line < 10; ++line) {
    for (int k = 0; k < 99; ++k) {
      const double x = 0.4 + 2.0 * k;
      const double y = 3.3 + 15.0 * line;
      lines.push_back({x, y, hills(x / 199.0, y / 149.0) + noise(random)});
    }
  }
  const numerics::gridding::RegularGrid grid = grid_of(lines, frame).grid;
  for (const ScatteredPoint& point : lines) {
    EXPECT_NEAR(surface_at(grid, point.x, point.y), point.z, 1e-3 * range_of(lines));
  }

  // Each point of a few is met, wherever it stands among them.
  const GridFrame small = unit_frame(30, 20);
  for (std::size_t peak = 0; peak < 8; ++peak) {
    Points few = random_points(8, 2, hills, small);
    few[peak].z += 1.0;
    const numerics::gridding::RegularGrid peaked = grid_of(few, small).grid;
    EXPECT_NEAR(surface_at(peaked, few[peak].x, few[peak].y), few[peak].z, 1e-3 * range_of(few)) << peak;
  }

  // A pair 0.01 cells apart with different values, nearest to one node and to two.
  for (const double x : {50.3, 50.495}) {
    Points points = random_points(100, 7, hills, frame);
    points.push_back({x, 70.2, 0.0});
    points.push_back({x + 0.01, 70.2, 1.0});
    // Inside the points' hull: outside it the surface is free to rise.
    for (const auto& [corner_x, corner_y] :
         {std::pair(0.0, 0.0), {199.0, 0.0}, {0.0, 149.0}, {199.0, 149.0}}) {
      points.push_back({corner_x, corner_y, hills(corner_x / 199.0, corner_y / 149.0)});
    }
    const std::vector<double> found = grid_of(points, frame).grid.values;
    const double range = range_of(points);
    EXPECT_GT(*std::min_element(found.begin(), found.end()), -0.1 * range - 0.1);
    EXPECT_LT(*std::max_element(found.begin(), found.end()), 1.1 * range + 0.1);
  }
}

TEST(Minimum_curvature, Grids_of_any_shape) {
  for (const GridFrame& frame : {unit_frame(1000, 60), unit_frame(33, 7), unit_frame(7, 33), unit_frame(4, 4),
                                 unit_frame(17, 9), unit_frame(64, 64)}) {
    const Points points = random_points(400, 8, hills, frame);
    const GriddedSurface surface = grid_of(points, frame);
    EXPECT_TRUE(surface.converged) << frame.columns << " x " << frame.rows;
    ASSERT_EQ(surface.grid.values.size(), frame.columns * frame.rows);
    for (const double value : surface.grid.values) {
      EXPECT_LT(std::abs(value - 0.5), 1.5);
    }
  }
}

TEST(Minimum_curvature, Degenerate_input) {
  const GridFrame frame = unit_frame(20, 10);
  const auto all_equal = [](const Points& points, double z) {
    const std::vector<double> values = grid_of(points, unit_frame(20, 10)).grid.values;
    return std::all_of(values.begin(), values.end(), [z](double value) { return value == z; });
  };
  EXPECT_TRUE(all_equal({{3.2, 4.1, 7.5}}, 7.5));
  EXPECT_TRUE(all_equal({{3.2, 4.1, 7.5}, {3.2, 4.1, 7.5}, {8.0, 4.1, 7.5}}, 7.5));
  EXPECT_TRUE(all_equal({{3.2, 4.1, 7.5}, {25.0, 4.1, 9.5}}, 7.5));  // the second lies outside

  const double nan = std::nan("");
  const Points good = random_points(30, 9, hills, frame);
  const auto refused = [](const Points& points, const GridFrame& of) {
    EXPECT_THROW(minimum_curvature(points, of), std::invalid_argument);
  };
  refused({}, frame);
  refused({{-1.0, 2.0, 3.0}, {30.0, 2.0, 3.0}}, frame);
  refused({{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}}, frame);
  refused({{1.0, 1.0, 3.0}, {5.0, 3.1, 6.0}, {9.0, 4.9, 1.0}, {13.0, 7.2, 2.0}}, frame);  // close to one line
  refused({{1.0, 2.0, nan}}, frame);
  refused({{nan, 2.0, 1.0}}, frame);
  refused(good, unit_frame(3, 10));
  refused(good, {0.0, 0.0, 0.0, 20, 10});
  refused(good, {nan, 0.0, 1.0, 20, 10});

  // Told how far it is, and stopped half-way.
  std::vector<double> shares;
  const auto until_half = [&shares](double share) {
    shares.push_back(share);
    return share < 0.5;
  };
  EXPECT_FALSE(minimum_curvature(good, frame, {.progress = until_half}).has_value());
  EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
  EXPECT_LT(shares.back(), 1.0);
}

}  // namespace
