#include "numerics/geodesy/datum_shift.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

using namespace numerics::geodesy;

namespace {

constexpr double metres_in_degree = 111200.0;

double distance(const GeographicPlace& a, const GeographicPlace& b) {
  const double shrink = std::cos(a.latitude * std::numbers::pi / 180.0);
  return metres_in_degree * std::hypot(a.latitude - b.latitude, shrink * (a.longitude - b.longitude));
}

}  // namespace

TEST(Datum_shift, Agrees_with_a_published_example) {
  // Ordnance Survey, A guide to coordinate systems in Great Britain: the water tower at Caister on OSGB36,
  // and on ETRS89 as its transformation by a grid of corrections has it. Parameters are good for some metres.
  const GeographicPlace tower[] = {
      {52.0 + 39.0 / 60.0 + 27.2531 / 3600.0, 1.0 + 43.0 / 60.0 + 4.5177 / 3600.0}};
  const GeographicPlace on_etrs89{52.658007833, 1.716073973};
  const auto shifted = shifted_to_wgs_84(4277, tower);
  ASSERT_TRUE(shifted);
  EXPECT_GT(distance(tower[0], on_etrs89), 100.0);
  EXPECT_LT(distance(shifted->at(0), on_etrs89), 5.0);
}

TEST(Datum_shift, Moves_a_line_as_a_whole_and_modern_datums_not_at_all) {
  // AGD66 lies about 200 m to the south-west of GDA94 all over Australia; the border of two areas of
  // parameters runs along 141 degrees east.
  const GeographicPlace line[] = {{-30.0, 140.999}, {-30.0, 141.0}, {-30.0, 141.001}};
  const auto shifted = shifted_to_wgs_84(4202, line);
  ASSERT_TRUE(shifted);
  EXPECT_NEAR(distance(line[0], shifted->at(0)), 205.0, 15.0);
  EXPECT_GT(shifted->at(0).latitude, -30.0);
  EXPECT_NEAR(shifted->at(2).longitude - shifted->at(1).longitude, 0.001, 1e-7);
  EXPECT_NEAR(shifted->at(1).longitude - shifted->at(0).longitude, 0.001, 1e-7);
  for (const std::int32_t datum : {4326, 4283, 7844}) {
    EXPECT_LT(distance(shifted_to_wgs_84(datum, line).value().at(0), line[0]), 2.0) << datum;
  }
  EXPECT_FALSE(shifted_to_wgs_84(1, line)) << "no such datum";
}

TEST(Datum_shift, Knows_names_as_files_write_them) {
  for (const char* const name : {"WGS84", "wgs 84", "WGS-84", "GDA94", "ETRS89", "ITRF2014"}) {
    EXPECT_TRUE(is_close_to_wgs_84(name)) << name;
  }
  for (const char* const name : {"AGD66", "NAD27", "", "WGS72", "unknown"}) {
    EXPECT_FALSE(is_close_to_wgs_84(name)) << name;
  }
}
