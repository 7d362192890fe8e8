// The profile on an axis of distances, what a click on it means there, and what is said of a line.
#include "display/line_axis.h"

#include "database/sites.h"
#include "display/profile_plot.h"
#include "tests/display/made_survey.h"

using namespace Module_display_data;

namespace {

class LineAxisTest : public MadeSurveyTest {
 protected:
  /// Puts stations of line 200E so many minutes of latitude, of 1845 m, to the north.
  static void store_sites(const std::vector<double>& minutes) {
    for (std::size_t i = 0; i < minutes.size(); ++i) {
      Module_database::Site site;
      site.line = "200E";
      site.station = 100.0 * static_cast<double>(i + 1);
      site.latitude = -25.0 + minutes[i] / 60.0;
      site.longitude = 141.0;  // the middle of a zone
      std::ignore = Module_database::keep_site(site);
    }
  }

  LineAxis axis;
};

TEST_F(LineAxisTest, The_profile_goes_by_distances_and_its_points_stay_those_of_the_stations) {
  open_line(3);
  store_sites({0.0, 4.0, 1.0});
  ASSERT_TRUE(axis.take_line("200E"));
  EXPECT_EQ(profile_plot(axis).phase.table.series[0].x, (std::vector<double>{100, 200, 300}));
  EXPECT_STREQ(axis.title(), "Station (m)");
  EXPECT_EQ(axis.choose(PositionSource::distances), "");
  EXPECT_STREQ(axis.title(), "Distance (m)");
  const GraphPair plot = profile_plot(axis);
  const std::vector<double>& x = plot.phase.table.series[6].x;
  ASSERT_EQ(x.size(), 3U);
  const double minute = 0.9996 * 1845.0;
  EXPECT_EQ(x[0], 0.0);
  EXPECT_NEAR(x[1], minute, 3.0);
  EXPECT_NEAR(x[2], 4.0 * minute, 10.0);
  EXPECT_EQ(axis.x_of(300.0), x[1]);
  EXPECT_EQ(profile_order(axis), (std::vector<std::size_t>{0, 2, 1}));
  EXPECT_EQ(plot.resistivity.table.series[6].y[1], 196.5);     // the third station's
  EXPECT_DOUBLE_EQ(plot.resistivity.x.minimum, -0.25 * x[2]);  // half the mean spacing
  EXPECT_DOUBLE_EQ(plot.resistivity.x.maximum, 1.25 * x[2]);

  Module_database::open_survey().database.execute("DELETE FROM StationsTable WHERE Station = 200");
  axis.forget_places();
  ASSERT_TRUE(axis.take_line("200E"));
  EXPECT_FALSE(axis.x_of(200.0));  // readings whose station has lost its row have no place
  EXPECT_TRUE(is_absent(profile_plot(axis).phase.table.series[6].y[2]));
}

TEST_F(LineAxisTest, A_line_is_spoken_of_once_and_refuses_what_it_has_not) {
  open_line(3);
  ASSERT_TRUE(axis.take_line("200E"));
  EXPECT_FALSE(axis.take_line("200E"));
  EXPECT_FALSE(axis.take_notice());
  EXPECT_EQ(axis.choose(PositionSource::distances),
            "The sites of line 200E have no places, so there are no distances along it");
  EXPECT_FALSE(axis.by_distance());
  EXPECT_EQ(axis.x_of(100.0), 100.0);
  std::ignore = axis.choose(PositionSource::station_numbers);
  store_sites({0.0, 1.0, 2.0});
  axis.forget_places();
  ASSERT_TRUE(axis.take_line("200E"));
  const auto notice = axis.take_notice();
  ASSERT_TRUE(notice);
  EXPECT_EQ(notice->text, "The stations of line 200E are 100 m apart by their numbers, its sites 1.8 km");
  EXPECT_TRUE(notice->offers_distances);
  EXPECT_FALSE(axis.take_notice());
  axis.take_line("300E");
  axis.take_line("200E");
  EXPECT_FALSE(axis.take_notice());
  axis.reset();
  axis.take_line("200E");
  std::ignore = axis.choose(PositionSource::distances);
  EXPECT_FALSE(axis.take_notice());  // there is nothing to mend
  EXPECT_EQ(axis.source(), PositionSource::distances);
}

}  // namespace
