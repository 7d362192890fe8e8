#include "display/both_modes.h"

#include "display/chosen_points.h"
#include "display/graph_clicks.h"
#include "display/point_texts.h"
#include "display/raw_plot.h"
#include "display/station_plot.h"
#include "reduction/edits/masks.h"
#include "tests/display/made_survey.h"

using namespace Module_display_data;
using Module_averaged_data::data_sets;

namespace {

class BothModes : public MadeSurveyTest {
 public:
  ~BothModes() override {
    forget_chosen_points();
    ask_for_both_modes(false);
    (void)load_other_mode();
  }

 protected:
  /// Line 200E with both modes at its first station, and ExHy alone at its second. ExHy is selected.
  void open_modes() {
    made::ReadingKey key = made::key(64.0F, 100.0);
    key.data_type = "EyHx";
    for (const int event : {1, 2}) {
      made::store(key, event, made::reading({{1.0F, 9.0F, -130.0F}, {4.0F, 8.0F, -140.0F}}));
    }
    open_line(2);
    ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
    go(choose_data_type("ExHy"));
    go({.station_to_display = 1});
    ask_for_both_modes(true);
    ASSERT_EQ(load_other_mode(), 0);
  }
  static void go(const Redisplay& choice) {
    if (choice.station_to_display > 0) {
      ASSERT_FALSE(display_station(choice.station_to_display, {}).failed);
    }
  }
};

}  // namespace

TEST_F(BothModes, Stand_beside_each_other_in_their_colours_and_documents_have_one) {
  open_modes();
  const std::size_t own = data_sets().station.slots.size();
  const GraphPair both = station_plot(false, Modes::both);
  ASSERT_EQ(both.phase.table.series.size(), own + 2);  // merged curve and average of one scan rate
  EXPECT_EQ(both.phase.series_styles[0].colour, mode_colour("ExHy"));
  EXPECT_EQ(both.phase.series_styles[1].colour, pale_mode_colour("ExHy"));
  EXPECT_EQ(both.phase.series_styles[own].colour, mode_colour("EyHx"));
  EXPECT_LT(both.phase.y.minimum, -140.0);
  EXPECT_GT(both.phase.y.maximum, 41.0);
  EXPECT_LT(station_plot(true, Modes::both).phase.y.minimum, -140.0) << "the line's own scale has no EyHx";
  EXPECT_EQ(station_series_label(0), "Merged data, ExHy");
  EXPECT_EQ(station_series_label(own + 1), "Averaged data for 64, EyHx");
  EXPECT_TRUE(
      station_point_text(own, 1, Component::phase).starts_with("Merged data, EyHx: 4.0000 Hz, -140.00"));
  EXPECT_EQ(station_plot(false).phase.table.series.size(), own);

  const std::size_t own_repeats = data_sets().repeats.slots.size();
  EXPECT_EQ(raw_plot(false, Modes::both).phase.table.series.size(), own_repeats + 3);
  EXPECT_EQ(raw_plot(false).phase.table.series.size(), own_repeats);
  EXPECT_EQ(raw_series_label(own_repeats), "Average, EyHx");
  EXPECT_EQ(raw_series_label(own_repeats + 2), "Repeat 2, EyHx");
  EXPECT_TRUE(raw_series_label(1).ends_with("ExHy"));
}

TEST_F(BothModes, A_click_on_the_other_one_selects_it_and_masks_nothing) {
  open_modes();
  const std::string before = made::whole_readings_table();
  const std::size_t own = data_sets().station.slots.size();
  const PointClick click = click_station_point(Component::phase, own, 1, "4.0000");
  EXPECT_EQ(click.data_type, "EyHx");
  EXPECT_EQ(click.edit, Edit::nothing);
  const PointClick raw = click_raw_point(Component::phase, data_sets().repeats.slots.size() + 1, 1);
  EXPECT_EQ(raw.data_type, "EyHx");
  EXPECT_EQ(raw.event_text, "1");
  EXPECT_EQ(made::whole_readings_table(), before);
  go(choose_data_type(click.data_type));
  ASSERT_EQ(load_other_mode(), 0);
  EXPECT_EQ(session().current_station, 100.0);
  EXPECT_EQ(other_mode().station.key.data_type, "ExHy");
  EXPECT_EQ(click_station_point(Component::phase, 0, 1, click.frequency_text).edit, Edit::changed);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.counts_at(2, 1), 0);
  EXPECT_TRUE(click_station_point(Component::phase, 99, 0, "").series_label.empty());
}

TEST_F(BothModes, A_curve_of_the_other_one_that_rests_on_nothing_is_dashed_and_says_so) {
  open_modes();
  go(choose_data_type("EyHx"));
  for (const std::size_t slot : {1U, 2U}) {
    ASSERT_EQ(Module_averaged_data::set_repeat_use(slot, Module_averaged_data::UseFlag::reading, false),
              Edit::changed);
  }
  go(choose_data_type("ExHy"));
  ASSERT_EQ(load_other_mode(), 0);
  const std::size_t own = data_sets().station.slots.size();
  const GraphPair both = station_plot(false, Modes::both);
  EXPECT_TRUE(both.phase.series_styles[own + 1].dashed);
  EXPECT_GE(both.phase.series_styles[own + 1].width, both.phase.series_styles[own].width)
      << "the merged curve would hide it";
  EXPECT_FALSE(both.phase.series_styles[0].dashed || both.phase.series_styles[1].dashed);
  EXPECT_TRUE(station_series_label(own + 1).ends_with(nothing_in_use));
  EXPECT_FALSE(station_series_label(1).ends_with(nothing_in_use));
  EXPECT_TRUE(station_label(Modes::both).ends_with("dashed: no reading in use"));
  EXPECT_FALSE(station_label().ends_with("in use")) << "one mode alone is shown";
  const auto says = [](std::size_t slot) {
    return station_point_text(slot, 0, Component::phase).find("rests on no reading in use") !=
           std::string::npos;
  };
  EXPECT_TRUE(says(own)) << "the merged curve of the other mode";
  EXPECT_FALSE(says(0));
  const std::size_t own_repeats = data_sets().repeats.slots.size();
  EXPECT_TRUE(raw_plot(false, Modes::both).phase.series_styles[own_repeats].dashed);
  EXPECT_EQ(raw_series_label(own_repeats), std::string("Average, EyHx") + nothing_in_use);
}

TEST_F(BothModes, A_merged_curve_names_the_averages_under_it_that_rest_on_nothing) {
  open_modes();
  const auto note = [] {
    const std::string text = station_point_text(0, 0, Component::phase);
    const std::size_t at = text.find("\nThe average of ");
    return at == std::string::npos ? std::string() : text.substr(at + 1, text.find('\n', at + 1) - at - 1);
  };
  EXPECT_EQ(note(), "");
  const auto switch_off = [](double scan_rate, std::size_t first_slot) {
    session().current_scan_rate = scan_rate;
    ASSERT_EQ(Module_averaged_data::load_selected_repeats(), 0);
    for (std::size_t slot = first_slot; slot < data_sets().repeats.slots.size(); ++slot) {
      ASSERT_EQ(Module_averaged_data::set_repeat_use(slot, Module_averaged_data::UseFlag::reading, false),
                Edit::changed);
    }
  };
  switch_off(64.0, 1);
  EXPECT_EQ(note(), "The average of 64 Hz rests on no reading in use");
  switch_off(256.0, 1);
  EXPECT_EQ(note(), "The average of 64, 256 Hz rests on no reading in use");
  ASSERT_EQ(Module_averaged_data::set_repeat_use(0, Module_averaged_data::UseFlag::reading, false),
            Edit::changed);
  EXPECT_EQ(note(), "The average of 64 Hz rests on no reading in use") << "the other isn't in the curve";
}

TEST_F(BothModes, A_rectangle_marks_and_masks_the_points_of_both) {
  open_modes();
  const std::vector<PlotPlace> curves{{0, 1}, {data_sets().station.slots.size(), 1}};
  const std::vector<PlotPlace> repeats{{1, 0}, {data_sets().repeats.slots.size() + 1, 0}};
  choose_station_points(Component::phase, curves);
  choose_raw_points(Component::resistivity, repeats);
  keep_chosen_points_shown();
  EXPECT_EQ(chosen_count(), 4U);
  const std::int32_t merged = other_mode().station.slots[0].reading.ID;
  const std::int32_t repeat = other_mode().repeats.slots[1].reading.ID;
  ASSERT_EQ(mask_chosen_points(false), Edit::changed);
  EXPECT_EQ(Module_database::read_reading(made::row(merged)).curve.counts_at(2, 1), 0);
  EXPECT_EQ(Module_database::read_reading(made::row(repeat)).curve.counts_at(1, 0), 0);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.counts_at(2, 1), 0);
  EXPECT_EQ(data_sets().repeats.slots[1].reading.curve.counts_at(1, 0), 0);
}

TEST_F(BothModes, Are_one_where_the_survey_has_no_other_and_neighbours_hide_its_averages) {
  open_modes();
  go({.station_to_display = 2});
  ASSERT_EQ(load_other_mode(), 0);
  EXPECT_TRUE(other_mode().station.slots.empty() && other_mode().repeats.slots.empty());
  EXPECT_EQ(station_series_label(0), "Merged data");
  ASSERT_FALSE(display_station(1, {.show = true, .count = 1}).failed);
  ASSERT_EQ(load_other_mode(), 0);
  EXPECT_EQ(other_mode().station.slots.size(), 1U);
  EXPECT_EQ(other_mode_of("ExHx"), "EyHy");
  EXPECT_EQ(other_mode_of("HzHx"), "");
}
