#include "numerics/geodesy/best_line.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

using namespace numerics::geodesy;

TEST(Best_line, Runs_from_the_first_place_to_the_last_one) {
  // Places every 500 m along azimuth 30 degrees, by turns 3 m beside it: the distances by hand.
  const double east = 0.5;
  const double north = std::sqrt(3.0) / 2.0;
  std::vector<MapPlace> places;
  for (int step = 0; step < 11; ++step) {
    const double along = 500.0 * step;
    const double beside = step % 2 == 0 ? 3.0 : -3.0;
    places.push_back({7e5 + along * east + beside * north, 8e6 + along * north - beside * east, 0});
  }
  const auto line = best_line(places);
  ASSERT_TRUE(line);
  EXPECT_TRUE(line->is_line());
  EXPECT_NEAR(line->length, 5000.0, 0.1);
  EXPECT_NEAR(line->rms_distance, 3.0, 0.02);
  EXPECT_NEAR(line->direction_east, east, 1e-3);
  EXPECT_NEAR(line->direction_north, north, 1e-3);
  EXPECT_NEAR(line->along(places[3]) - line->along(places[0]), 1500.0, 0.1);
  EXPECT_GT(line->beside(places[0]), line->beside(places[1]));
  std::ranges::reverse(places);
  EXPECT_NEAR(best_line(places)->direction_east, -east, 1e-3);
}

TEST(Best_line, An_area_or_a_single_place_is_none) {
  const std::vector<MapPlace> corners{{0, 0, 0}, {900, 0, 0}, {0, 800, 0}, {900, 800, 0}};
  ASSERT_TRUE(best_line(corners));
  EXPECT_FALSE(best_line(corners)->is_line());
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<MapPlace> one{{5, 5, 0}, {5, 5, 0}, {nan, 7, 0}};
  EXPECT_FALSE(best_line(one));
  EXPECT_FALSE(best_line({}));
}
