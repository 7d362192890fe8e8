// The forward response of layered ground against closed forms.
#include "numerics/impedance/layered_earth.h"

#include <cmath>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "numerics/impedance/apparent_resistivity.h"

namespace {

using numerics::impedance::apparent_resistivity;
using numerics::impedance::Layer;
using numerics::impedance::phase_degrees;
using numerics::impedance::surface_impedance;

TEST(Layered_earth, Half_space_gives_its_resistivity_and_45_degrees) {
  for (const double frequency : {1e-4, 1.0, 1e4}) {
    SCOPED_TRACE(frequency);
    const std::vector<Layer> ground{{250.0, 0.0}};
    const auto impedance = surface_impedance(ground, frequency);
    EXPECT_NEAR(apparent_resistivity(impedance, frequency), 250.0, 1e-9 * 250.0);
    EXPECT_NEAR(phase_degrees(impedance), 45.0, 1e-9);
  }
}

// Layers of one resistivity are one half-space, wherever their borders are, also far below the skin depth.
TEST(Layered_earth, Borders_without_contrast_are_not_seen) {
  const std::vector<Layer> ground{{80.0, 10.0}, {80.0, 1e6}, {80.0, 3.0}, {80.0, 0.0}};
  EXPECT_NEAR(apparent_resistivity(surface_impedance(ground, 1e4), 1e4), 80.0, 1e-9 * 80.0);
}

// Two layers in real numbers, with p = h / skin depth and Q from the resistivities:
// rho_a / rho_1 = (1 + 2 Q e^(-2p) cos 2p + Q^2 e^(-4p)) / (1 - 2 Q e^(-2p) cos 2p + Q^2 e^(-4p)).
TEST(Layered_earth, Two_layers_agree_with_the_closed_form) {
  struct Case {
    double top, thickness, bottom;
  };
  const Case cases[] = {{100.0, 500.0, 1000.0}, {100.0, 500.0, 1.0}, {10.0, 50.0, 1e5}};
  for (const Case& c : cases) {
    for (const double frequency : {0.01, 1.0, 30.0, 1000.0}) {
      SCOPED_TRACE(::testing::Message() << c.top << " over " << c.bottom << " at " << frequency << " Hz");
      const double skin_depth = std::sqrt(c.top / (4e-7 * frequency)) / std::numbers::pi;
      const double p = c.thickness / skin_depth;
      const double q = (std::sqrt(c.bottom) - std::sqrt(c.top)) / (std::sqrt(c.bottom) + std::sqrt(c.top));
      const double even = 1.0 + q * q * std::exp(-4.0 * p);
      const double odd = 2.0 * q * std::exp(-2.0 * p) * std::cos(2.0 * p);
      const double expected = c.top * (even + odd) / (even - odd);
      const std::vector<Layer> ground{{c.top, c.thickness}, {c.bottom, 0.0}};
      EXPECT_NEAR(apparent_resistivity(surface_impedance(ground, frequency), frequency), expected,
                  1e-9 * expected);
    }
  }
}

TEST(Layered_earth, Phase_tells_what_lies_below) {
  const std::vector<Layer> conductive_below{{100.0, 500.0}, {1.0, 0.0}};
  const std::vector<Layer> resistive_below{{100.0, 500.0}, {10000.0, 0.0}};
  EXPECT_GT(phase_degrees(surface_impedance(conductive_below, 10.0)), 55.0);
  EXPECT_LT(phase_degrees(surface_impedance(resistive_below, 10.0)), 35.0);
}

}  // namespace
