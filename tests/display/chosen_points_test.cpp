// Points that a rectangle has marked: what can be, what is masked with them, and how long they stay marked.
#include "display/chosen_points.h"

#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/undo_stack.h"
#include "display/profile_plot.h"
#include "display/raw_plot.h"
#include "display/station_plot.h"
#include "reduction/edits/undo.h"
#include "tests/display/made_survey.h"

using namespace Module_averaged_data;
using namespace Module_display_data;

namespace {

class ChosenPoints : public MadeSurveyTest {
 public:
  ~ChosenPoints() override { forget_chosen_points(); }

 protected:
  static std::int32_t stored_mask(std::int32_t ID, int field, std::size_t point) {
    return Module_database::read_reading(made::row(ID)).curve.counts_at(field, point);
  }
  /// What the data sets hold is what they would hold when loaded now.
  static void expect_current() {
    for (const StationSlot& slot : data_sets().station.slots) {
      const Module_database::Curve curve = Module_database::read_reading(made::row(slot.reading.ID)).curve;
      EXPECT_EQ(slot.reading.curve.mask, curve.mask);
      EXPECT_EQ(slot.reading.curve.data, curve.data);
    }
    for (const RepeatSlot& slot : data_sets().repeats.slots) {
      const Module_database::Curve curve = Module_database::read_reading(made::row(slot.reading.ID)).curve;
      EXPECT_EQ(slot.reading.curve.mask, curve.mask);
      EXPECT_EQ(slot.reading.curve.data, curve.data);
    }
  }
};

}  // namespace

TEST_F(ChosenPoints, Of_repeats_averages_and_merged_curve_are_masked_and_undone_as_one_command) {
  open_line(2);
  const std::string before = made::whole_readings_table();
  const std::vector<PlotPlace> repeats{{1, 0}, {1, 1}, {3, 1}};
  const std::vector<PlotPlace> curves{{0, 4}, {1, 2}, {2, 0}};  // merged, 64 and 256 Hz
  choose_raw_points(Component::resistivity, repeats);
  choose_station_points(Component::phase, curves);
  choose_station_points(Component::phase, curves);  // again changes nothing
  EXPECT_EQ(chosen_text(), "6 points marked: Delete masks them, Shift+Delete unmasks them, Esc leaves them");
  const std::int32_t repeat = data_sets().repeats.slots[3].reading.ID;
  const std::int32_t merged = data_sets().station.slots[0].reading.ID;
  const std::int32_t slow = data_sets().station.slots[1].reading.ID;
  const float average_at_1 = data_sets().station.slots[1].reading.curve.value(1, 1);
  {
    const ScopedValue updating(session().updating_controls, true);
    EXPECT_EQ(mask_chosen_points(false), Edit::nothing);
  }
  EXPECT_TRUE(chosen_points_are(true));
  EXPECT_FALSE(chosen_points_are(false));
  ASSERT_EQ(mask_chosen_points(false), Edit::changed);
  EXPECT_EQ(chosen_count(), 0U);
  EXPECT_EQ(stored_mask(repeat, 1, 1), 0);
  EXPECT_EQ(stored_mask(repeat, 2, 1), 1) << "the phase was not marked";
  EXPECT_EQ(stored_mask(merged, 2, 4), 0);
  EXPECT_EQ(stored_mask(slow, 2, 2), 0);
  EXPECT_EQ(stored_mask(merged, 2, 2), 1) << "a mask of its average is none of the merged curve";
  EXPECT_NE(data_sets().station.slots[1].reading.curve.value(1, 1), average_at_1) << "averaged again";
  expect_current();
  const std::string masked = made::whole_readings_table();
  EXPECT_EQ(Module_Brenlox::top_undo().size(), Module_Brenlox::undo_count()) << "one command";

  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
  ASSERT_FALSE(display_station(1, {}).failed);
  expect_current();
  ASSERT_EQ(redo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == masked);

  ASSERT_FALSE(display_station(1, {}).failed);
  choose_raw_points(Component::resistivity, repeats);
  EXPECT_TRUE(chosen_points_are(false)) << "masked";
  choose_raw_points(Component::phase, repeats);
  EXPECT_FALSE(chosen_points_are(true) || chosen_points_are(false)) << "some of each";
  ASSERT_EQ(mask_chosen_points(true), Edit::changed);
  EXPECT_EQ(stored_mask(repeat, 1, 1), 1);
  choose_raw_points(Component::resistivity, repeats);
  EXPECT_EQ(mask_chosen_points(true), Edit::nothing);
  EXPECT_EQ(chosen_count(), 3U) << "what has changed nothing stays marked";
}

TEST_F(ChosenPoints, Are_ringed_wherever_their_reading_is_shown_until_it_no_longer_is) {
  open_line(3);
  NeighbourOptions neighbours;
  neighbours.show = neighbours.all = true;
  ASSERT_EQ(load_selected_station(neighbours), 0);
  const std::size_t end = data_sets().station.slots[0].reading.curve.count();
  const std::vector<PlotPlace> places{{0, 2}, {1, 2}, {2, 2}, {9, 0}, {0, end}, {0, 99}};
  choose_station_points(Component::resistivity, places);
  EXPECT_EQ(chosen_count(), 1U) << "a neighbour isn't masked from here";
  EXPECT_EQ(chosen_text(), "1 point marked: Delete masks it, Shift+Delete unmasks it, Esc leaves it");
  const auto rings = [](const GraphPair& plot, std::size_t series, std::size_t point) {
    return plot.resistivity.point_styles[series][point] & graph::chosen;
  };
  EXPECT_NE(rings(station_plot(false), 0, 2), 0);
  EXPECT_NE(rings(profile_plot(LineAxis()), 2, 0), 0);
  EXPECT_EQ(rings(profile_plot(LineAxis()), 2, 1), 0);

  const std::vector<PlotPlace> columns{{3, 2}};
  choose_profile_points(Component::phase, columns);
  choose_raw_points(Component::phase, places);
  ASSERT_EQ(chosen_count(), 5U);
  ASSERT_FALSE(display_station(2, {}).failed);
  keep_chosen_points_shown();
  EXPECT_EQ(chosen_count(), 2U) << "the profile still shows its own";
  session().frequencies.enabled[3] = 0;
  keep_chosen_points_shown();
  EXPECT_EQ(chosen_count(), 1U);

  choose_raw_points(Component::phase, places);
  ASSERT_EQ(chosen_count(), 4U);
  data_sets().repeats.slots[1].reading.curve.counts_at(2, 2) = 0;
  session().hide_masked_data = true;
  keep_chosen_points_shown();
  EXPECT_EQ(chosen_count(), 3U) << "a hidden point can't be seen to be masked";
  StoredReading& repeat = data_sets().repeats.slots[2].reading;
  repeat.UseResistivity = false;
  keep_chosen_points_shown();
  EXPECT_EQ(chosen_count(), 3U) << "phases stay in sight without the resistivities";
  repeat.UsePhase = false;
  keep_chosen_points_shown();
  EXPECT_EQ(chosen_count(), 2U);
  session().hide_masked_data = false;
}
