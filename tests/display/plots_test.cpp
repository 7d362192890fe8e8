#include <cmath>

#include "core/number_text.h"
#include "display/plot_colours.h"
#include "display/point_texts.h"
#include "display/profile_plot.h"
#include "display/raw_plot.h"
#include "display/site_names.h"
#include "display/station_plot.h"
#include "reduction/edits/masks.h"
#include "tests/display/made_survey.h"
#include "tests/support/named_site.h"

using namespace Module_display_data;
using Module_averaged_data::Component;
using Module_averaged_data::data_sets;
using Module_averaged_data::Edit;
using Module_averaged_data::StationSlot;
using Module_averaged_data::UseFlag;
using Module_database::StoredReading;

namespace {

class Plots : public MadeSurveyTest {
 protected:
  static int shown_points(const PanePlot& pane, std::size_t series) {
    int shown = 0;
    for (const double y : pane.table.series.at(series).y) {
      shown += y > graph::null_limit ? 1 : 0;
    }
    return shown;
  }
};

}  // namespace

TEST_F(Plots, Repeats_are_drawn_in_their_colours_under_a_bold_average) {
  open_line(1);
  const GraphPair plot = raw_plot(false);
  ASSERT_EQ(plot.resistivity.table.series.size(), 5U);
  EXPECT_EQ(plot.resistivity.series_styles[0].colour, black);
  EXPECT_EQ(plot.resistivity.series_styles[0].width, 3.0);
  EXPECT_EQ(plot.phase.series_styles[3].colour, repeat_colour(3));
  EXPECT_EQ(plot.phase.series_styles[3].width, 1.0);
  EXPECT_EQ(plot.resistivity.table.series[0].x, (std::vector<double>{1.0, 2.0, 4.0, 8.0, 16.0}));
  EXPECT_EQ(plot.resistivity.table.series[4].y[0], 115.0);  // 100 + station/10 + event + frequency
  EXPECT_EQ(plot.phase.table.series[4].y[0], 44.0);

  EXPECT_EQ(plot.resistivity.x.type, graph::AxisType::logarithmic);
  EXPECT_DOUBLE_EQ(plot.resistivity.x.minimum, 0.9);
  EXPECT_DOUBLE_EQ(plot.resistivity.x.maximum, 1.1 * 16.0 + 1.0);
  EXPECT_EQ(plot.resistivity.x.cutoff, 0.001);
  EXPECT_EQ(plot.resistivity.y.type, graph::AxisType::logarithmic);
  EXPECT_DOUBLE_EQ(plot.resistivity.y.minimum, 0.95 * 112.0);
  EXPECT_DOUBLE_EQ(plot.resistivity.y.maximum, 1.05 * 130.0 + 1.0);
  EXPECT_EQ(plot.phase.y.type, graph::AxisType::linear);
  EXPECT_DOUBLE_EQ(plot.phase.y.minimum, 0.95 * 41.0 - 2.0);
  EXPECT_DOUBLE_EQ(plot.phase.y.maximum, 1.05 * 44.0 + 2.0);
  EXPECT_EQ(raw_label(), "Average/raw for 100");
  EXPECT_EQ(raw_series_label(0), "Average");
  EXPECT_EQ(raw_series_label(2), "Repeat 2");
}

TEST_F(Plots, A_single_repeat_keeps_its_colour_and_negative_phases_stay_inside) {
  made::store(made::key(), 1, made::reading({{1.0F, 0.5F, -30.0F}, {2.0F, 0.7F, -10.0F}}));
  session().frequencies = made::frequencies();
  EXPECT_TRUE(raw_plot(false).empty());
  ASSERT_EQ(Module_averaged_data::load_repeat_data(made::key(), session().frequencies,
                                                   Module_averaged_data::data_sets().repeats),
            0);
  const GraphPair plot = raw_plot(false);
  EXPECT_EQ(plot.resistivity.series_styles[0].width, 1.0);
  EXPECT_EQ(plot.resistivity.series_styles[1].colour, repeat_colour(1));
  EXPECT_EQ(plot.resistivity.y.minimum, 0.0);
  EXPECT_DOUBLE_EQ(plot.phase.y.minimum, -30.0 * 1.05 - 2.0);
  EXPECT_DOUBLE_EQ(plot.phase.y.maximum, -10.0 * 0.95 + 2.0);
}

TEST_F(Plots, Masked_points_hide_on_raw_and_station_graphs_and_stay_on_the_profile) {
  open_line(2);
  ASSERT_EQ(Module_averaged_data::toggle_repeat_point(1, 0, Component::resistivity), Edit::changed);
  ASSERT_EQ(Module_averaged_data::set_repeat_use(2, UseFlag::reading, false), Edit::changed);
  ASSERT_EQ(Module_averaged_data::set_repeat_use(3, UseFlag::phase, false), Edit::changed);
  ASSERT_EQ(Module_averaged_data::toggle_station_point(0, 2, Component::phase), Edit::changed);
  GraphPair raw = raw_plot(false);
  EXPECT_EQ(raw.resistivity.point_styles[1], (std::vector<int>{2, 1, 1, 1, 1}));
  for (std::size_t series = 0; series < 5; ++series) {
    EXPECT_EQ(shown_points(raw.resistivity, series), 5);
  }
  session().hide_masked_data = true;
  raw = raw_plot(false);
  EXPECT_EQ(shown_points(raw.resistivity, 1), 4);
  EXPECT_EQ(shown_points(raw.phase, 1), 5);
  EXPECT_EQ(shown_points(raw.resistivity, 2), 0);
  EXPECT_EQ(shown_points(raw.phase, 2), 0);
  EXPECT_EQ(shown_points(raw.resistivity, 3), 5);
  EXPECT_EQ(shown_points(raw.phase, 3), 0);
  EXPECT_EQ(shown_points(station_plot(false).phase, 0), 6);

  const GraphPair profile = profile_plot();
  EXPECT_EQ(shown_points(profile.phase, 2), 2);
  EXPECT_EQ(profile.phase.point_styles[2], (std::vector<int>{2, 5}));
}

TEST_F(Plots, Axes_of_a_line_end_at_what_is_shown) {
  open_line(2);
  auto& columns = Module_averaged_data::data_sets().profile.columns;
  columns[0].resistivity[1] = 1e6F;
  columns[0].mask[1][0] = 0;
  columns[0].phase[2] = 85.0F;
  columns[0].mask[2][1] = 0;
  columns[1].phase[2] = -80.0F;
  columns[1].UsePhase = false;
  const Module_averaged_data::CurveExtents all = line_extents(false);
  EXPECT_EQ(all.resistivity.maximum, 1e6F);
  EXPECT_EQ(all.phase.maximum, 85.0F);
  EXPECT_EQ(all.phase.minimum, -80.0F);
  const Module_averaged_data::CurveExtents shown = line_extents(true);
  EXPECT_EQ(shown.resistivity.maximum, 186.5F);
  EXPECT_EQ(shown.phase.maximum, 42.5F);
  EXPECT_EQ(shown.phase.minimum, 42.5F);
}

TEST_F(Plots, Frequencies_that_are_not_selected_disappear_everywhere) {
  open_line(2);
  session().frequencies.enabled[3] = 0;  // 8 Hz, which both scan rates have
  EXPECT_EQ(shown_points(raw_plot(false).resistivity, 1), 4);
  EXPECT_EQ(shown_points(station_plot(false).phase, 0), 6);
  const GraphPair profile = profile_plot();
  EXPECT_EQ(shown_points(profile.resistivity, 3), 0);
  EXPECT_EQ(shown_points(profile.resistivity, 4), 2);
}

TEST_F(Plots, Static_factors_act_on_station_and_profile_but_not_on_raw_graphs) {
  open_line(2);
  ASSERT_EQ(Module_averaged_data::set_static_factor(0.5F), Edit::changed);
  EXPECT_DOUBLE_EQ(raw_plot(false).resistivity.table.series[1].y[0], 112.0);
  const GraphPair station = station_plot(false);
  EXPECT_DOUBLE_EQ(station.resistivity.table.series[0].y[0], 0.5 * 113.5);
  EXPECT_DOUBLE_EQ(station.resistivity.table.series[1].y[0], 0.5 * 113.5);  // the average as well
  EXPECT_DOUBLE_EQ(station.phase.table.series[1].y[0], 42.5);
  const GraphPair profile = profile_plot();
  EXPECT_DOUBLE_EQ(profile.resistivity.table.series[0].y[0], 0.5 * 113.5);
  EXPECT_DOUBLE_EQ(profile.resistivity.table.series[0].y[1], 123.5);
  // Shifted curves stay in sight: 0.8 of the lowest one drawn, 1.2 of the highest one stored.
  EXPECT_DOUBLE_EQ(station.resistivity.y.minimum, 0.8 * 0.5 * 113.5);
  EXPECT_DOUBLE_EQ(station.resistivity.y.maximum, 1.2 * 176.5 + 1.0);
}

TEST_F(Plots, Averages_and_merged_curves_have_error_bars) {
  open_line(2);
  ASSERT_EQ(Module_averaged_data::set_static_factor(0.5F), Edit::changed);
  const double deviation = std::sqrt(1.25);  // of four repeats that are one apart
  const GraphPair raw = raw_plot(false);
  ASSERT_EQ(raw.resistivity.table.series[0].error.size(), 5U);
  EXPECT_NEAR(raw.resistivity.table.series[0].error[2], deviation, 1e-2);  // of 32-bit sums of squares
  EXPECT_NEAR(raw.phase.table.series[0].error[2], deviation, 1e-3);
  EXPECT_TRUE(raw.resistivity.table.series[1].error.empty());
  GraphPair station = station_plot(false);
  EXPECT_NEAR(station.resistivity.table.series[0].error[2], 0.5 * deviation, 1e-2);
  EXPECT_NEAR(station.phase.table.series[1].error[2], deviation, 1e-3);

  (void)display_station(2, {true, false, 1, Module_averaged_data::NeighbourSide::both});
  station = station_plot(false);
  EXPECT_FALSE(station.phase.table.series[0].error.empty());
  EXPECT_TRUE(station.phase.table.series[1].error.empty());
}

TEST_F(Plots, Bars_show_what_repeats_say_and_else_what_the_file_says) {
  const made::ReadingKey key = made::key(64.0F);
  const std::vector<made::Point> both{{1.0F, 100.0F, 40.0F}, {2.0F, 100.0F, 40.0F}};
  made::store(key, 1, made::with_errors(made::reading(both), 3.25F, 0.0625F));
  made::store(key, 2, made::reading({{2.0F, 110.0F, 44.0F}}));
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  open_line(0);
  ASSERT_EQ(Module_averaged_data::set_static_factor(2.0F), Edit::changed);
  const GraphPair raw = raw_plot(false);
  EXPECT_EQ(raw.resistivity.table.series[0].error, (std::vector<double>{3.25, 5.0}));
  EXPECT_EQ(raw.phase.table.series[0].error, (std::vector<double>{0.0625, 2.0}));
  EXPECT_EQ(raw.resistivity.table.series[1].error, (std::vector<double>{3.25, 3.25}));
  EXPECT_TRUE(raw.resistivity.table.series[2].error.empty());
  const GraphPair station = station_plot(false);
  for (const std::size_t series : {0U, 1U}) {
    EXPECT_EQ(station.resistivity.table.series[series].error, (std::vector<double>{6.5, 10.0}));
    EXPECT_EQ(station.phase.table.series[series].error, (std::vector<double>{0.0625, 2.0}));
  }
  EXPECT_EQ(raw_point_text(0, 0, Component::phase),
            "Average: 1.0000 Hz, 40.00 \u00b1 0.0625 deg (error of the file)");
  EXPECT_EQ(raw_point_text(1, 1, Component::resistivity),
            "Repeat 1 (event 1): 2.0000 Hz, 100.00 \u00b1 3.25 ohm-m (error of the file)\n7.edi");
  EXPECT_EQ(raw_point_text(2, 0, Component::phase), "Repeat 2 (event 2): 2.0000 Hz, 44.00 deg\n7.edi");
  EXPECT_EQ(station_point_text(0, 1, Component::resistivity),
            "Merged data: 2.0000 Hz, 210.00 \u00b1 10.00 ohm-m (standard deviation of 2 repeats)");
  EXPECT_EQ(profile_point_text(0, 0, Component::resistivity),
            "Station 100: 1.0000 Hz, 200.00 \u00b1 6.50 ohm-m (error of the file)");
  EXPECT_EQ(profile_point_text(1, 0, Component::resistivity),
            "Station 100: 2.0000 Hz, 210.00 \u00b1 10.00 ohm-m (standard deviation of the repeats)");
}

TEST_F(Plots, Small_errors_are_told_with_four_decimals) {
  open_line(1);
  StoredReading& repeat = data_sets().repeats.slots[1].reading;
  const std::pair<float, const char*> cases[] = {{0.0999F, "0.0999"}, {0.1004F, "0.10"}, {0.15F, "0.15"}};
  for (const auto& [error, text] : cases) {
    repeat.curve.error_at(Module_database::field_phase, 0) = error;
    EXPECT_EQ(raw_point_text(1, 0, Component::phase), "Repeat 1 (event 1): 1.0000 Hz, 41.00 \u00b1 " +
                                                          std::string(text) +
                                                          " deg (error of the file)\n7.edi");
  }
}

TEST_F(Plots, Field_magnitudes_of_an_averaged_file_are_no_bars) {
  made::StoredReading file = made::reading({{1.0F, 100.0F, 40.0F}, {2.0F, 100.0F, 40.0F}});
  for (const std::size_t point : {0U, 1U}) {
    file.curve.value(13, point) = no_data;  // as files have it whose fields 3 and 4 hold them
  }
  file.curve.error_at(1, 1) = 3.5F;
  made::store(made::key(64.0F), 1, file, 1);
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  open_line(0);
  const GraphPair plot = station_plot(false);
  ASSERT_EQ(plot.resistivity.table.series.size(), 2U);
  for (const std::size_t series : {0U, 1U}) {  // the merged curve, the file
    EXPECT_EQ(plot.resistivity.table.series[series].error, (std::vector<double>{graph::null_value, 3.5}));
    EXPECT_TRUE(plot.phase.table.series[series].error.empty());
  }
}

TEST_F(Plots, Points_are_named_with_deviation_mask_and_file) {
  open_line(1);
  EXPECT_EQ(raw_point_text(4, 1, Component::phase), "Repeat 4 (event 4): 2.0000 Hz, 44.00 deg\n7.edi");
  ASSERT_EQ(Module_averaged_data::toggle_repeat_point(4, 1, Component::phase), Edit::changed);
  EXPECT_EQ(raw_point_text(4, 1, Component::phase),
            "Repeat 4 (event 4): 2.0000 Hz, 44.00 deg, masked\n7.edi");
  EXPECT_EQ(raw_point_text(0, 1, Component::phase),
            "Average: 2.0000 Hz, 42.00 \u00b1 0.82 deg (standard deviation of 3 repeats)");
  EXPECT_EQ(station_point_text(0, 1, Component::phase),
            "Merged data: 2.0000 Hz, 42.00 \u00b1 0.82 deg (standard deviation of the repeats)")
      << "of which scan rates, isn't known";
  EXPECT_EQ(station_point_text(1, 1, Component::resistivity),
            "Averaged data for 64: 2.0000 Hz, 114.50 \u00b1 1.12 ohm-m (standard deviation of 4 repeats)");
  EXPECT_EQ(raw_point_text(9, 1, Component::phase), "");
}

TEST_F(Plots, A_station_is_named_with_its_site_where_that_has_a_name) {
  made::store_line(3);
  name_site("200e", 100.0, "ET001");
  const std::string longest = "Ünterer Hof, Station am Bach, dritte Aufstellung im trockenen Se";
  name_site("200E", 200.0, "0200");  // only the number again
  name_site("200E", 300.0, longest);
  add_file(0);
  ASSERT_EQ(fill_selection_lists(lists), 0);
  EXPECT_EQ(session().station_name, (std::vector<std::string>{"ET001", "", longest}));
  ASSERT_FALSE(display_station(1, {}).failed);
  EXPECT_EQ(raw_label(), "Average/raw for 100 (ET001)");
  EXPECT_EQ(station_label(), "Merge/averages for 100 (ET001)");
  EXPECT_TRUE(raw_point_text(0, 1, Component::phase).ends_with("\nStation 100 (ET001)"));
  EXPECT_TRUE(station_point_text(0, 1, Component::phase).ends_with("\nStation 100 (ET001)"));
  EXPECT_TRUE(profile_point_text(0, 0, Component::phase).starts_with("Station 100 (ET001): "));
  EXPECT_TRUE(profile_point_text(0, 1, Component::phase).starts_with("Station 200: "));

  (void)display_station(2, {true, false, 1, Module_averaged_data::NeighbourSide::both});
  EXPECT_EQ(station_label(), "Merge/averages for 200");
  EXPECT_EQ(station_series_label(1), "Merged for 100 (ET001)");
  EXPECT_EQ(station_point_text(1, 1, Component::phase).find("\nStation"), std::string::npos);
  EXPECT_EQ(raw_point_text(0, 1, Component::phase).find("\nStation"), std::string::npos);
  (void)display_station(3, {});
  EXPECT_EQ(station_label(), "Merge/averages for 300 (Ünterer Hof, Station am\u2026)");

  // What an import, a removal or its undoing changes is read with the lists.
  Module_database::open_survey().database.execute("DELETE FROM SitesTable WHERE Station < 300");
  name_site("200E", 200.0, "ET006");
  ASSERT_EQ(refill_selection_lists(lists), 0);
  EXPECT_EQ(session().station_name, (std::vector<std::string>{"", "ET006", longest}));
}

TEST_F(Plots, Station_curves_have_the_styles_of_their_kinds) {
  open_line(4);
  made::store(made::key(64.0F), 1, made::reading({{1.0F, 10.0F, 40.0F}}), 1);
  made::store(made::key(0.0F), 1, made::reading({{1.0F, 11.0F, 41.0F}}), 2);
  session().current_station_index = -1;
  session().current_station = no_current_station;
  (void)display_station(1, {});
  GraphPair plot = station_plot(false);
  const std::vector<graph::SeriesStyle>& styles = plot.phase.series_styles;
  ASSERT_EQ(styles.size(), 5U);
  EXPECT_EQ(styles[0].colour, black);
  EXPECT_EQ(styles[0].width, 3.0);
  EXPECT_EQ(styles[1].colour, repeat_colour(1));
  EXPECT_EQ(styles[1].width, 2.0);
  EXPECT_EQ(styles[3].colour, repeat_colour(3));
  EXPECT_EQ(styles[3].width, 1.0);
  EXPECT_EQ(styles[4].colour, cyan);
  const char* labels[] = {"Merged data", "Averaged data for 64", "Averaged data for 256",
                          "Averaged file for 64", "Merged file data"};
  for (std::size_t slot = 0; slot < 5; ++slot) {
    EXPECT_EQ(station_series_label(slot), labels[slot]);
  }
  EXPECT_EQ(station_label(), "Merge/averages for 100");

  (void)display_station(2, {true, false, 1, Module_averaged_data::NeighbourSide::both});
  plot = station_plot(false);
  ASSERT_EQ(plot.phase.series_styles.size(), 3U);
  EXPECT_EQ(plot.phase.series_styles[1].colour, blue);
  EXPECT_EQ(plot.phase.series_styles[2].colour, cyan);
  EXPECT_EQ(plot.phase.point_styles[2].front(), -2);  // the second override colour
  EXPECT_EQ(station_series_label(2), "Merged for 300");

  // 25 colours, then again.
  StationSlot& neighbour = data_sets().station.slots[2];
  for (const auto& [distance, style] : {std::pair(24, -25), std::pair(25, -1), std::pair(-26, -2)}) {
    neighbour.station_index = 2 + distance;
    EXPECT_EQ(station_plot(false).phase.point_styles[2].front(), style) << distance;
  }
}

TEST_F(Plots, Fixed_scale_takes_the_limits_of_the_line) {
  open_line(3);
  EXPECT_DOUBLE_EQ(raw_plot(true).resistivity.y.maximum, 1.05 * 196.5 + 1.0);
  EXPECT_DOUBLE_EQ(raw_plot(true).phase.y.minimum, 0.95 * 42.5 - 2.0);
  EXPECT_DOUBLE_EQ(station_plot(true).resistivity.y.maximum, 1.2 * 196.5 + 1.0);
  EXPECT_DOUBLE_EQ(station_plot(false).resistivity.y.maximum, 1.2 * 176.5 + 1.0);
  EXPECT_DOUBLE_EQ(station_plot(true).phase.y.minimum, 0.95 * 42.5 - 2.0);
  EXPECT_DOUBLE_EQ(station_plot(false).phase.y.minimum, 0.9 * 42.5 - 2.0);
}

TEST_F(Plots, Fixed_scale_does_not_widen_at_a_single_station) {
  open_line(3);
  ASSERT_EQ(Module_averaged_data::set_static_factor(100.0F), Edit::changed);
  for (const std::int32_t station : {1, 2}) {
    (void)display_station(station, {});
    const GraphPair plot = station_plot(true);
    EXPECT_DOUBLE_EQ(plot.resistivity.y.minimum, 0.8 * 113.5);
    EXPECT_DOUBLE_EQ(plot.resistivity.y.maximum, 1.2 * 196.5 + 1.0);
    EXPECT_TRUE(plot.resistivity.mark_points_beyond && plot.phase.mark_points_beyond);
    EXPECT_TRUE(raw_plot(true).resistivity.mark_points_beyond);
  }
}

TEST_F(Plots, A_reading_taken_out_is_grey_and_has_no_say_in_the_axes) {
  open_line(2);
  made::store(made::key(64.0F), 5, made::reading({{0.25F, 9000.0F, -80.0F}, {0.5F, 9000.0F, 80.0F}}));
  session().frequencies.list.insert(session().frequencies.list.begin(), {0.25F, 0.5F});
  session().frequencies.enabled.insert(session().frequencies.enabled.begin(), {1, 1});
  ASSERT_EQ(Module_averaged_data::load_selected_repeats(), 0);
  EXPECT_DOUBLE_EQ(raw_plot(false).resistivity.y.maximum, 1.05 * 9000.0 + 1.0);
  ASSERT_EQ(Module_averaged_data::set_repeat_use(5, UseFlag::reading, false), Edit::changed);
  GraphPair raw = raw_plot(false);
  EXPECT_EQ(raw.resistivity.series_styles[5].colour, graph::unused_colour);
  EXPECT_EQ(raw.phase.series_styles[4].colour, repeat_colour(4));
  EXPECT_EQ(shown_points(raw.resistivity, 5), 2);
  EXPECT_DOUBLE_EQ(raw.resistivity.y.maximum, 1.05 * 130.0 + 1.0);
  EXPECT_DOUBLE_EQ(raw.phase.y.minimum, 0.95 * 41.0 - 2.0);
  EXPECT_DOUBLE_EQ(raw.phase.x.minimum, 0.9);

  // Nor has what is hidden: the highest value of each end, and the only one at 1 Hz.
  ASSERT_EQ(Module_averaged_data::toggle_repeat_point(4, 4, Component::resistivity), Edit::changed);
  for (std::size_t repeat = 1; repeat <= 4; ++repeat) {
    for (const Component component : {Component::resistivity, Component::phase}) {
      ASSERT_EQ(Module_averaged_data::toggle_repeat_point(repeat, 0, component), Edit::changed);
    }
  }
  EXPECT_DOUBLE_EQ(raw_plot(false).resistivity.y.maximum, 1.05 * 130.0 + 1.0);
  session().hide_masked_data = true;
  raw = raw_plot(false);
  EXPECT_DOUBLE_EQ(raw.resistivity.y.maximum, 1.05 * 129.0 + 1.0);
  EXPECT_DOUBLE_EQ(raw.resistivity.y.minimum, 0.95 * 113.0);
  EXPECT_DOUBLE_EQ(raw.phase.x.minimum, 0.9 * 2.0);
  session().hide_masked_data = false;

  // The merged curve of the second station, the higher one.
  (void)display_station(2, {});
  ASSERT_EQ(Module_averaged_data::set_merged_use(UseFlag::reading, false), Edit::changed);
  EXPECT_EQ(station_plot(false).resistivity.series_styles[0].colour, graph::unused_colour);
  const GraphPair profile = profile_plot();
  EXPECT_EQ(profile.phase.point_styles[4], (std::vector<int>{graph::palette_style(5), graph::unused_point}));
  EXPECT_DOUBLE_EQ(profile.phase.x.maximum, 250.0);  // its place on the line stays
  EXPECT_DOUBLE_EQ(profile.resistivity.y.maximum, 1.2 * 176.5 + 1.0);
  EXPECT_DOUBLE_EQ(station_plot(true).resistivity.y.maximum, 1.2 * 176.5 + 1.0);
  EXPECT_EQ(profile_point_text(4, 1, Component::phase),
            "Station 200: 16.0000 Hz, 42.50 \u00b1 1.12 deg (standard deviation of the repeats), masked");
}

TEST_F(Plots, Axes_start_below_the_lowest_frequency_however_low_it_is) {
  made::store(made::key(), 1, made::reading({{0.0002F, 50.0F, 30.0F}, {2.0F, 70.0F, 10.0F}}));
  made::store(made::key(), 2,
              made::reading({{-1.0F, 50.0F, 30.0F}, {0.0F, 50.0F, 30.0F}, {1.0F, 70.0F, 10.0F}}));
  session().frequencies = made::frequencies();
  ASSERT_EQ(Module_averaged_data::load_repeat_data(made::key(), session().frequencies,
                                                   Module_averaged_data::data_sets().repeats),
            0);
  const GraphPair plot = raw_plot(false);
  EXPECT_NEAR(graph::resolve_range(plot.phase.x, {}).lower, 0.9 * 0.0002, 1e-9);
  EXPECT_EQ(graph::resolve_range(plot.phase.x, {}).lower, graph::resolve_range(plot.resistivity.x, {}).lower);

  made::ReadingKey key = made::key(64.0F);
  made::store(key, 1, made::reading({{0.0F, 50.0F, 30.0F}}));
  ASSERT_EQ(Module_averaged_data::load_repeat_data(key, session().frequencies,
                                                   Module_averaged_data::data_sets().repeats),
            0);
  EXPECT_EQ(graph::resolve_range(raw_plot(false).phase.x, {}).lower, 0.001);
}

TEST_F(Plots, Profile_runs_along_the_stations) {
  open_line(3);
  const GraphPair plot = profile_plot();
  ASSERT_EQ(plot.resistivity.table.series.size(), 7U);
  EXPECT_EQ(plot.resistivity.table.series[0].x, (std::vector<double>{100.0, 200.0, 300.0}));
  EXPECT_EQ(plot.resistivity.point_styles[5], (std::vector<int>{3, 3, 3}));
  EXPECT_EQ(plot.resistivity.point_styles[6], (std::vector<int>{4, 4, 4}));
  EXPECT_FALSE(plot.resistivity.series_styles[0].colour.has_value());
  EXPECT_DOUBLE_EQ(plot.phase.x.minimum, 50.0);
  EXPECT_DOUBLE_EQ(plot.phase.x.maximum, 350.0);
  EXPECT_DOUBLE_EQ(plot.resistivity.y.minimum, 0.8 * 113.5);
  EXPECT_DOUBLE_EQ(plot.resistivity.y.maximum, 1.2 * 196.5 + 1.0);
  EXPECT_DOUBLE_EQ(plot.phase.y.maximum, 1.1 * 42.5 + 2.0);

  auto& columns = data_sets().profile.columns;
  columns.resize(120, columns.front());
  EXPECT_EQ(profile_plot().phase.series_styles[0].marker, graph::Marker::disc);
  columns.resize(121, columns.front());
  EXPECT_EQ(profile_plot().phase.series_styles[0].marker, graph::Marker::dot)
      << "discs would hide the curves";
}

TEST_F(Plots, A_frequency_of_the_profile_stands_out_and_its_points_or_all_curves_are_labelled) {
  open_line(3);
  GraphPair plot = profile_plot();
  const double usual = plot.phase.series_styles[2].width;
  emphasise(plot, 2);
  emphasise(plot, plot.phase.series_styles.size());
  EXPECT_GT(plot.phase.series_styles[2].width, 2.0 * usual);
  EXPECT_EQ(plot.resistivity.series_styles[2].width, plot.phase.series_styles[2].width);
  EXPECT_EQ(plot.phase.series_styles[3].width, usual);

  const auto name_of = [](float frequency) { return plain_text(frequency) + " Hz"; };
  PanePlot& pane = plot.resistivity;
  std::vector<std::string> texts;
  const auto label = [&](std::optional<std::size_t> frequency_index) {
    texts.clear();
    const std::vector<graph::PlotLabel> labels = profile_labels(pane, frequency_index, name_of);
    for (const graph::PlotLabel& each : labels) {
      texts.push_back(each.text);
    }
    return labels;
  };
  pane.table.series[2].y = {10.0, 100.0, 9.876};
  EXPECT_EQ(label(2).at(1).y, 100.0);
  EXPECT_EQ(texts, (std::vector<std::string>{"10.0", "100", "9.88"}));
  pane.table.series[2].y[0] = graph::null_value;
  EXPECT_EQ(label(2).at(0).x, 200.0);
  EXPECT_EQ(texts, (std::vector<std::string>{"100", "9.88"}));
  EXPECT_TRUE(label(99).empty());

  pane.table.series[2].y[2] = graph::null_value;
  const std::vector<graph::PlotLabel> ends = label(std::nullopt);
  EXPECT_EQ(texts, (std::vector<std::string>{"64 Hz", "32 Hz", "16 Hz", "8 Hz", "4 Hz", "2 Hz", "1 Hz"}));
  EXPECT_EQ(ends.at(3).x, 300.0);
  EXPECT_EQ(ends.at(4).x, 200.0) << "the last station that has a value";
}

TEST(Site_names, Are_shortened_beyond_24_characters) {
  const std::string longest = "\u00dc" + std::string(23, 'a');
  EXPECT_EQ(shortened_name(longest), longest);
  EXPECT_EQ(shortened_name(longest + "b"), "\u00dc" + std::string(22, 'a') + "\u2026");
}

TEST(Repeat_colour, Repeats_after_sixteen) {
  EXPECT_EQ(repeat_colour(0), (graph::Colour{0, 127, 255}));
  EXPECT_EQ(repeat_colour(14), (graph::Colour{255, 167, 0}));
  EXPECT_EQ(repeat_colour(31), (graph::Colour{255, 127, 0}));
}
