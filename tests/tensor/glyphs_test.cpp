#include "tensor/glyphs.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace {

using namespace Module_tensor;
using numerics::impedance::PhaseTensor;

constexpr double degree = std::numbers::pi / 180.0;

/// P = R(azimuth)^T diag(phi_max, phi_min) R(azimuth + 2 beta)
PhaseTensor made(double azimuth, double beta, double phi_max, double phi_min) {
  const double c = std::cos(azimuth * degree);
  const double s = std::sin(azimuth * degree);
  const double d = std::cos((azimuth + 2.0 * beta) * degree);
  const double t = std::sin((azimuth + 2.0 * beta) * degree);
  PhaseTensor tensor;
  tensor.xx.value = phi_max * c * d + phi_min * s * t;
  tensor.xy.value = phi_max * c * t - phi_min * s * d;
  tensor.yx.value = phi_max * s * d - phi_min * c * t;
  tensor.yy.value = phi_max * s * t + phi_min * c * d;
  return tensor;
}

struct Extremes {
  GlyphPoint longest{};
  double most = 0.0;
  double least = 1e9;
};

Extremes extremes_of(const std::vector<GlyphPoint>& outline) {
  Extremes found;
  for (const GlyphPoint& point : outline) {
    const double length = std::hypot(point[0], point[1]);
    if (length > found.most) {
      found.most = length;
      found.longest = point;
    }
    found.least = std::min(found.least, length);
  }
  return found;
}

/// Clockwise from up, modulo 180.
double axis_of(GlyphPoint point) { return std::fmod(std::atan2(point[0], point[1]) / degree + 360.0, 180.0); }

TEST(Arrow, One_beyond_all_earth_is_cut_in_its_direction) {
  EXPECT_FALSE(limited_tip({0.6, 0.8}).is_cut);
  const LimitedTip cut = limited_tip({-30.0, 40.0});
  EXPECT_TRUE(cut.is_cut);
  EXPECT_NEAR(cut.tip[0], -0.6, 1e-12);
  EXPECT_NEAR(cut.tip[1], 0.8, 1e-12);
}

TEST(Ellipse_outline, Points_clockwise_from_up_with_a_longest_half_axis_of_one) {
  struct Case {
    const char* name;
    double azimuth, beta, phi_max, phi_min;
  };
  const Case cases[] = {{"30 degrees clockwise of up", 30.0, 0.0, 2.0, 0.5},
                        {"150 degrees, west of north", 150.0, 0.0, 0.4, 0.1},
                        {"a skew leaves the axis alone", 70.0, 8.0, 1.7, 0.9},
                        {"phi_min negative", 30.0, -4.0, 1.2, -0.6},
                        {"phi_min zero: a line", 110.0, 0.0, 3.0, 0.0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto outline = ellipse_outline(made(c.azimuth, c.beta, c.phi_max, c.phi_min), 3600);
    ASSERT_EQ(outline.size(), 3600U);
    const Extremes found = extremes_of(outline);
    EXPECT_NEAR(found.most, 1.0, 1e-6);  // a point within 0.05 degrees of the axis
    EXPECT_NEAR(found.least, std::abs(c.phi_min) / c.phi_max, 1e-3);
    EXPECT_NEAR(axis_of(found.longest), c.azimuth, 0.2);
  }
}

TEST(Ellipse_outline, Is_empty_where_there_is_none) {
  EXPECT_TRUE(ellipse_outline(PhaseTensor{}, 36).empty());  // all unknown
  EXPECT_TRUE(ellipse_outline(made(0.0, 0.0, 0.0, 0.0), 36).empty());
  PhaseTensor endless = made(10.0, 0.0, 1.0, 0.5);
  endless.xy.value = INFINITY;
  EXPECT_TRUE(ellipse_outline(endless, 36).empty());
}

TEST(Turned_clockwise, Takes_north_to_east) {
  const GlyphPoint north = turned_clockwise({0.0, 2.0}, 90.0);
  EXPECT_NEAR(north[0], 2.0, 1e-12);
  EXPECT_NEAR(north[1], 0.0, 1e-12);
  const GlyphPoint west_of_north = turned_clockwise({0.0, 1.0}, -30.0);
  EXPECT_NEAR(west_of_north[0], -0.5, 1e-12);
}

TEST(Arrow_shape, Has_its_tip_where_it_points_and_a_head_that_fits) {
  const auto east = arrow_shape({40.0, 0.0}, 8.0);
  ASSERT_TRUE(east);
  EXPECT_EQ(east->head[0], (GlyphPoint{40.0, 0.0}));
  EXPECT_EQ(east->shaft_end, (GlyphPoint{32.0, 0.0}));
  EXPECT_DOUBLE_EQ(east->head[1][0], 32.0);
  EXPECT_DOUBLE_EQ(east->head[1][1], -east->head[2][1]);  // as far to either side
  EXPECT_GT(east->head[1][1], 0.0);

  const auto tiny = arrow_shape({0.0, -4.0}, 8.0);
  ASSERT_TRUE(tiny);
  EXPECT_EQ(tiny->shaft_end, (GlyphPoint{0.0, -2.0}));
}

TEST(Arrow_shape, Is_nothing_without_a_length) {
  EXPECT_FALSE(arrow_shape({0.0, 0.0}, 8.0));
  EXPECT_FALSE(arrow_shape({NAN, 1.0}, 8.0));
}

}  // namespace
