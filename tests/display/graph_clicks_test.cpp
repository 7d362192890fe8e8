#include "display/graph_clicks.h"

#include "core/absent_value.h"
#include "tests/display/made_survey.h"

using namespace Module_display_data;
using Module_averaged_data::data_sets;

namespace {
using GraphClicks = MadeSurveyTest;
}  // namespace

TEST_F(GraphClicks, A_raw_point_is_masked_at_once) {
  open_line(1);
  PointClick click = click_raw_point(Component::phase, 2, 3);
  EXPECT_EQ(click.series_label, "Repeat 2");
  EXPECT_EQ(click.file_text, "7.edi");
  EXPECT_EQ(click.event_text, "2");
  EXPECT_EQ(click.frequency_text, "8.0000");
  EXPECT_EQ(click.edit, Edit::changed);
  EXPECT_EQ(data_sets().repeats.slots[2].reading.curve.counts_at(2, 3), 0);
  EXPECT_FALSE(session().updating_controls);

  click = click_raw_point(Component::phase, 0, 0);
  EXPECT_EQ(click.series_label, "Average");
  EXPECT_EQ(click.file_text, "");
  session().updating_controls = true;
  click = click_raw_point(Component::phase, 1, 0);
  EXPECT_EQ(click.edit, Edit::nothing);
  EXPECT_EQ(click.series_label, "Repeat 1");
  EXPECT_TRUE(click_raw_point(Component::phase, 9, 0).series_label.empty());
}

TEST_F(GraphClicks, The_first_click_on_the_station_graph_selects_and_the_second_masks) {
  open_line(1);
  PointClick click = click_station_point(Component::resistivity, 2, 3, "");  // the other scan rate
  EXPECT_EQ(click.series_label, "Averaged data for 256");
  EXPECT_EQ(click.frequency_text, "64.0000");
  EXPECT_EQ(click.event_text, "");
  EXPECT_TRUE(click.draw_raw);
  EXPECT_EQ(session().current_scan_rate, 256.0);
  EXPECT_EQ(data_sets().repeats.key.scan_rate, 256.0F);
  EXPECT_EQ(click.edit, Edit::nothing);

  click = click_station_point(Component::resistivity, 2, 3, click.frequency_text);
  EXPECT_EQ(click.edit, Edit::changed);
  EXPECT_FALSE(click.draw_raw);
  EXPECT_EQ(data_sets().station.slots[2].reading.curve.counts_at(1, 3), 0);
  EXPECT_EQ(data_sets().repeats.slots[0].reading.curve.counts_at(1, 3), 0);
  EXPECT_EQ(data_sets().profile.columns[0].resistivity[6], no_data);

  click = click_station_point(Component::phase, 0, 0, "64.0000");
  EXPECT_EQ(click.edit, Edit::nothing);  // another frequency
  EXPECT_EQ(click_station_point(Component::phase, 0, 0, "1.0000").edit, Edit::changed);
}

TEST_F(GraphClicks, Points_that_have_gone_are_not_found) {
  open_line(1);
  const std::size_t raw_points = data_sets().repeats.slots[1].reading.curve.count();
  EXPECT_TRUE(click_raw_point(Component::phase, 1, raw_points).series_label.empty());
  const std::size_t station_points = data_sets().station.slots[0].reading.curve.count();
  EXPECT_TRUE(click_station_point(Component::phase, 0, station_points, "").series_label.empty());
  EXPECT_TRUE(click_profile_point(Component::phase, 0, 1, "").frequency_text.empty());
  const std::size_t frequencies = data_sets().profile.frequencies.size();
  EXPECT_TRUE(click_profile_point(Component::phase, frequencies, 0, "").frequency_text.empty());
}

TEST_F(GraphClicks, The_first_click_on_the_profile_moves_and_the_second_masks) {
  open_line(3);
  PointClick click = click_profile_point(Component::resistivity, 2, 1, "");
  EXPECT_EQ(click.station_to_display, 2);
  EXPECT_EQ(click.status_text, "4.0000");
  EXPECT_EQ(click.edit, Edit::nothing);
  (void)display_station(click.station_to_display, {});
  EXPECT_EQ(click_profile_point(Component::resistivity, 3, 1, "4.0000").edit, Edit::nothing);
  click = click_profile_point(Component::resistivity, 2, 1, "4.0000");
  EXPECT_EQ(click.station_to_display, -1);
  EXPECT_EQ(click.edit, Edit::changed);
  EXPECT_EQ(data_sets().profile.columns[1].mask[2][0], 0);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.counts_at(1, 2), 0);
}
