#include "formats/transfer_function/sound_numbers.h"

#include <cmath>

#include <gtest/gtest.h>

#include "formats/transfer_function/point_places.h"

using namespace formats::transfer_function;

TEST(Sound_numbers, Places_are_on_the_earth) {
  Site site;
  EXPECT_FALSE(take_place(site, -999.0, 10.0));
  EXPECT_FALSE(take_place(site, 10.0, 361.0));
  EXPECT_FALSE(take_place(site, NAN, 10.0));
  EXPECT_TRUE(take_place(site, 0.0, 0.0));  // what programs write without a place
  EXPECT_FALSE(site.latitude.has_value());
  EXPECT_TRUE(take_place(site, 37.633, 238.532));
  EXPECT_DOUBLE_EQ(site.longitude.value(), 238.532 - 360.0);
  EXPECT_TRUE(take_place(site, -1.0, -190.0));
  EXPECT_DOUBLE_EQ(site.longitude.value(), 170.0);
}

TEST(Sound_numbers, Frequencies_have_periods) {
  for (const double number : std::vector<double>{0.0, -1.0, INFINITY, NAN, 1e31, 1e-320}) {
    EXPECT_FALSE(is_frequency(number)) << number;
  }
  EXPECT_TRUE(is_frequency(1e5));
}

TEST(Point_places, Series_meet_and_repeats_do_not_replace) {
  std::vector<Point> points;
  PointPlaces places;
  places.point_of(points, 0, 8.0).of(Component::zxy).phase = 1.0;
  places.point_of(points, 0, 4.0).of(Component::zxy).phase = 2.0;
  places.point_of(points, 0, 8.0).of(Component::zxy).phase = 3.0;
  places.point_of(points, 1, 8.0).of(Component::zyx).phase = 4.0;
  places.point_of(points, 1, 8.0).of(Component::zyx).phase = 5.0;
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[0].of(Component::zyx).phase, 4.0);
  EXPECT_EQ(points[2].of(Component::zxy).phase, 3.0);
  EXPECT_EQ(points[2].of(Component::zyx).phase, 5.0);
}
