#include "tensor/station_tipper.h"

#include <cmath>

#include "core/absent_value.h"
#include "tests/reduction/made_readings.h"

using namespace Module_tensor;
using made::StoredReading;

namespace {

StationCurves station_of(const StoredReading& x, const StoredReading& y) {
  StationCurves station;
  station.merged[static_cast<std::size_t>(CurveType::HzHx)] = x;
  station.merged[static_cast<std::size_t>(CurveType::HzHy)] = y;
  return station;
}

}  // namespace

TEST(Station_tipper, Has_the_frequencies_at_which_all_four_parts_count) {
  const StoredReading x = made::with_errors(
      made::reading({{1, -0.25F, 0.0F}, {2, 0.1F, 0.2F}, {4, 0.3F, 0.4F}, {8, 0.5F, 0.6F}, {16, 1, 1}}),
      0.02F, 0.03F);
  StoredReading y =
      made::reading({{1, 0.0F, -0.5F}, {2, 0.1F, 0.2F}, {4, 0.3F, no_data}, {16, 2, 2}, {16, 3, 3}});
  y.curve.counts_at(1, 1) = 0;
  const std::vector<TipperPoint> points = station_tipper(station_of(x, y));
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0].frequency, 1.0);
  EXPECT_EQ(points[0].tipper.x, std::complex(-0.25, 0.0));
  EXPECT_EQ(points[0].tipper.y, std::complex(0.0, -0.5));
  EXPECT_NEAR(points[0].tipper.covariance_x.real, 4e-4, 1e-9);
  EXPECT_NEAR(points[0].tipper.covariance_x.imaginary, 9e-4, 1e-9);
  EXPECT_FALSE(points[0].tipper.covariance_y.is_known());
  StationCurves repeated = station_of(x, y);
  repeated.sources[static_cast<std::size_t>(CurveType::HzHx)].repeat_errors.assign(5, {0.05F, no_data});
  const numerics::impedance::PartCovariance known = station_tipper(repeated).front().tipper.covariance_x;
  EXPECT_NEAR(known.real, 25e-4, 1e-8);  // of the repeats
  EXPECT_NEAR(known.imaginary, 9e-4, 1e-9);
  EXPECT_EQ(points[1].frequency, 16.0);
  EXPECT_EQ(points[1].tipper.y, std::complex(2.0, 2.0));
  EXPECT_TRUE(station_tipper(station_of(x, {})).empty());
  y.UsePhase = false;
  EXPECT_TRUE(station_tipper(station_of(x, y)).empty());
  EXPECT_TRUE(station_tipper({}).empty());
}
