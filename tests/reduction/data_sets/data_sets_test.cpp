#include "reduction/data_sets/data_sets.h"

#include "core/absent_value.h"
#include "reduction/edits/recalculate_station.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;

namespace {

class DataSetsTest : public SurveyTest {
 protected:
  DataSetsTest() {
    new_survey();
    reset_data_sets();
  }
  static std::vector<StationSlotKind> kinds() {
    std::vector<StationSlotKind> kinds;
    for (const StationSlot& slot : data_sets().station.slots) {
      kinds.push_back(slot.kind);
    }
    return kinds;
  }
  void expect_message(const std::string& beginning) {
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].rfind(beginning, 0), 0U) << messages[0];
  }
};

}  // namespace

TEST_F(DataSetsTest, Repeats_follow_their_average_by_event) {
  made::store_line(1);
  made::store(made::key(64.0F), 0, made::reading({{1.0F, 7.0F, -3.0F}}));  // an earlier event, stored later
  ASSERT_EQ(load_selected_repeats(), 0);
  const RepeatDataSet& data = data_sets().repeats;
  ASSERT_EQ(data.slots.size(), 6U);
  EXPECT_EQ(data.repeat_count, 5);
  EXPECT_EQ(session().repeat_count, 5);
  EXPECT_EQ(data.maximum_frequencies, 5U);
  EXPECT_LT(data.slots[0].reading.FileID, 0);
  EXPECT_EQ(data.slots[1].reading.EventNumber, 0);
  EXPECT_EQ(data.slots[5].reading.EventNumber, 4);
  EXPECT_EQ(data.slots[5].list_position, (std::vector<std::int32_t>{0, 1, 2, 3, 4}));
  EXPECT_EQ(data.extents.frequency.minimum, 1.0F);
  EXPECT_EQ(data.extents.frequency.maximum, 16.0F);
  EXPECT_EQ(data.extents.resistivity.minimum, 7.0F);
  EXPECT_EQ(data.extents.resistivity.maximum, 130.0F);
  EXPECT_EQ(data.extents.phase.minimum, -3.0F);
}

TEST_F(DataSetsTest, A_scan_rate_of_0_stands_for_the_first_of_the_station) {
  made::store_line(1);
  session().current_scan_rate = 0.0;
  ASSERT_EQ(load_selected_repeats(), 0);
  EXPECT_TRUE(data_sets().repeats.slots.empty());  // no station is loaded yet
  ASSERT_EQ(load_selected_station({}), 0);
  ASSERT_EQ(load_selected_repeats(), 0);
  EXPECT_EQ(session().current_scan_rate, 64.0);
  EXPECT_EQ(data_sets().repeats.repeat_count, 4);
}

TEST_F(DataSetsTest, A_file_of_averaged_data_stands_alone) {
  const ReadingKey key = made::key();
  const std::int32_t ID = made::store(key, 1, made::reading({{1.0F, 10.0F, 40.0F}}), 1);
  ASSERT_EQ(load_repeat_data(key, made::frequencies(), data_sets().repeats), 0);
  EXPECT_EQ(data_sets().repeats.repeat_count, 0);
  ASSERT_EQ(data_sets().repeats.slots.size(), 1U);
  EXPECT_EQ(data_sets().repeats.slots[0].reading.ID, ID);
  ASSERT_EQ(load_station_data(key, {}, made::frequencies(), data_sets().station), 0);
  EXPECT_EQ(kinds(), (std::vector{StationSlotKind::merged, StationSlotKind::file}));

  ReadingKey elsewhere = key;
  elsewhere.station = 900.0;
  ASSERT_EQ(load_repeat_data(elsewhere, made::frequencies(), data_sets().repeats), 0);
  EXPECT_TRUE(data_sets().repeats.slots.empty());
  ASSERT_EQ(load_station_data(elsewhere, {}, made::frequencies(), data_sets().station), 0);
  EXPECT_TRUE(data_sets().station.slots.empty());
}

TEST_F(DataSetsTest, Station_has_merged_curve_averages_files_and_further_merged_curves) {
  made::store_line(2);
  const ReadingKey merged_key = made::key(0.0F);
  const std::int32_t file = made::store(made::key(64.0F), 1, made::reading({{1.0F, 10.0F, 40.0F}}), 1);
  const std::int32_t other = made::store(merged_key, 1, made::reading({{1.0F, 11.0F, 41.0F}}), 2);
  ASSERT_EQ(load_selected_station({}), 0);
  const StationDataSet& data = data_sets().station;
  EXPECT_EQ(kinds(), (std::vector{StationSlotKind::merged, StationSlotKind::average, StationSlotKind::average,
                                  StationSlotKind::file, StationSlotKind::other_merged}));
  EXPECT_EQ(data.scan_rates, (std::vector<float>{64.0F, 256.0F}));
  EXPECT_EQ(data.slots[1].SampleRate, 64.0F);
  EXPECT_EQ(data.slots[2].SampleRate, 256.0F);
  EXPECT_EQ(data.slots[3].reading.ID, file);
  EXPECT_EQ(data.slots[4].reading.ID, other);
  EXPECT_EQ(data.slots[0].reading.curve.count(), 7U);

  // The profile keeps the derived one.
  ASSERT_EQ(load_selected_profile(), 0);
  ASSERT_EQ(data_sets().profile.columns.size(), 2U);
  EXPECT_EQ(data_sets().profile.columns[0].ID, data.slots[0].reading.ID);
}

TEST_F(DataSetsTest, Neighbours_take_the_place_of_averages) {
  made::store_line(5);
  session().current_station_index = 2;
  session().current_station = 200.0;
  ASSERT_EQ(load_selected_station({true, false, 2, NeighbourSide::both}), 0);
  const StationDataSet& data = data_sets().station;
  ASSERT_EQ(data.slots.size(), 5U);  // the window is moved back into the line
  EXPECT_EQ(data.neighbour_count, 4);
  EXPECT_EQ(data.slots[1].station, 100.0);
  EXPECT_EQ(data.slots[1].station_index, 1);
  EXPECT_EQ(data.slots[4].station, 500.0);
  EXPECT_EQ(data.slots[4].station_index, 5);
  EXPECT_EQ(data.extents.resistivity.maximum, 216.5F);  // station 500 at 64 Hz: mean of four events
}

TEST_F(DataSetsTest, Neighbour_window_stays_within_the_line) {
  SessionState& state = session();
  state.station_count = 8;  // lines of 2, 5 and 1 stations
  state.line_count = 3;
  state.line_of_station = {1, 1, 2, 2, 2, 2, 2, 3};
  state.first_station_of_line = {1, 3, 8, 9};
  struct Case {
    const char* name;
    std::int32_t station;
    NeighbourOptions options;
    std::vector<std::int32_t> expected;
  };
  using enum NeighbourSide;
  const Case cases[] = {
      {"not shown", 5, {false, true, 2, both}, {}},
      {"both sides", 5, {true, false, 1, both}, {4, 6}},
      {"before", 6, {true, false, 2, before}, {4, 5}},
      {"after", 4, {true, false, 2, after}, {5, 6}},
      {"whole line", 5, {true, true, 1, both}, {3, 4, 6, 7}},
      {"before the first one moves on", 3, {true, false, 2, before}, {4, 5}},
      {"after the last one moves back", 7, {true, false, 2, after}, {5, 6}},
      {"more than the line has", 3, {true, false, 3, both}, {4, 5, 6, 7}},
      {"a huge count", 4, {true, false, 2000000000, both}, {3, 5, 6, 7}},
      {"no number yet", 4, {true, false, 0, both}, {}},
      {"alone on its line", 8, {true, false, 2, both}, {}},
      {"no station", -1, {true, true, 2, both}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(neighbours_of(c.station, c.options), c.expected);
  }
}

TEST_F(DataSetsTest, Profile_lies_on_the_frequency_list) {
  made::store_line(3);
  ASSERT_EQ(load_selected_profile(), 0);
  const ProfileDataSet& data = data_sets().profile;
  EXPECT_EQ(data.frequencies, (std::vector<float>{1.0F, 2.0F, 4.0F, 8.0F, 16.0F, 32.0F, 64.0F}));
  ASSERT_EQ(data.columns.size(), 3U);
  EXPECT_EQ(data.columns[2].station, 300.0);
  EXPECT_EQ(data.columns[2].StationID, session().station_id[2]);
  EXPECT_EQ(data.columns[2].resistivity[6], 196.5F);
  EXPECT_EQ(data.columns[0].phase[0], 42.5F);
  EXPECT_EQ(data.extents.frequency.maximum, 64.0F);
  EXPECT_EQ(data.extents.resistivity.minimum, 113.5F);
  EXPECT_EQ(find_profile_column(data, 200.0), 1);
  EXPECT_EQ(find_profile_column(data, 250.0), -1);

  // A frequency that the list lacks is left out, one that a station lacks is absent.
  session().frequencies = {{1.5F, 2.0F, 64.0F}, {1, 1, 1}};
  ASSERT_EQ(load_selected_profile(), 0);
  EXPECT_EQ(data_sets().profile.columns[0].resistivity, (std::vector<float>{no_data, 114.5F, 176.5F}));
  session().frequencies = {};
  ASSERT_EQ(load_selected_profile(), 0);
  EXPECT_TRUE(data_sets().profile.columns.empty());
}

TEST_F(DataSetsTest, A_file_of_merged_data_stands_in_for_what_cannot_be_made) {
  const ReadingKey key = made::key(0.0F);
  const std::int32_t ID = made::store(key, 1, made::reading({{1.0F, 10.0F, 40.0F}}), 2);
  ASSERT_EQ(load_profile_data(key, made::frequencies(), data_sets().profile), 0);
  ASSERT_EQ(data_sets().profile.columns.size(), 1U);
  EXPECT_EQ(data_sets().profile.columns[0].ID, ID);
}

TEST_F(DataSetsTest, Recalculation_reaches_all_three) {
  made::store_line(2);
  ASSERT_EQ(load_selected_profile(), 0);
  ASSERT_EQ(load_selected_station({}), 0);
  ASSERT_EQ(load_selected_repeats(), 0);
  dao::Recordset row = made::row(data_sets().repeats.slots[4].reading.ID);
  row.edit();
  row.set_bit("UseReading", false);
  row.update();
  ASSERT_EQ(recalculate_station(), 0);
  // Events 1 to 3 are left at 1 Hz: 100 + 10 + 2 + 1.
  EXPECT_EQ(data_sets().repeats.slots[0].reading.curve.value(1, 0), 113.0F);
  EXPECT_EQ(data_sets().station.slots[1].reading.curve.value(1, 0), 113.0F);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.value(1, 0), 113.0F);
  EXPECT_EQ(data_sets().profile.columns[0].resistivity[0], 113.0F);
  EXPECT_EQ(data_sets().profile.columns[1].resistivity[0], 123.5F);
}

TEST_F(DataSetsTest, Failures_are_reported_once_and_keep_what_was_loaded) {
  made::store_line(1);
  ASSERT_EQ(load_selected_repeats(), 0);
  dao::Recordset row = made::row(data_sets().repeats.slots[3].reading.ID);
  row.edit();
  row.set_long("NumFrequencies", 99);
  row.update();
  EXPECT_EQ(load_selected_repeats(), -1);
  expect_message("An error occurred while retrieving the repeat data: ");
  EXPECT_EQ(data_sets().repeats.repeat_count, 2);

  ASSERT_EQ(load_selected_station({}), 0);
  for (const std::size_t slot : {1U, 0U}) {
    row = made::row(data_sets().station.slots[slot].reading.ID);
    row.edit();
    row.set_long("NumFrequencies", 99);
    row.update();
  }
  EXPECT_EQ(load_selected_station({}), -1);
  expect_message("An error occurred while generating the station data: ");
  EXPECT_EQ(load_selected_profile(), -1);
  expect_message("An error occurred while generating the profile data: ");
}

TEST_F(DataSetsTest, Neighbours_without_a_curve_are_passed_by_wherever_they_are) {
  made::store_line(4);
  const NeighbourOptions all{.show = true, .all = true};
  for (const double without : {400.0, 200.0}) {
    Module_database::open_survey().database.execute(
        "DELETE FROM ReadingsDataTable WHERE ReductionType = 2 AND Station = " + std::to_string(without));
    ASSERT_EQ(load_selected_station(all), 0);
    EXPECT_EQ(data_sets().station.neighbour_count, without == 400.0 ? 2 : 1);
    EXPECT_EQ(data_sets().station.slots.back().station, 300.0);
  }
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST(Same_station, Is_one_of_the_same_line_in_any_spelling) {
  const ReadingKey key = made::key(64.0F);
  ReadingKey other = key;
  other.line = "200e";
  other.scan_rate = 256.0F;
  EXPECT_TRUE(same_station(key, other));
  EXPECT_TRUE(same_line("\u00c5E", "\u00e5e"));
  for (void (*const change)(ReadingKey&) :
       {+[](ReadingKey& k) { k.line = "300E"; }, +[](ReadingKey& k) { k.station += 1.0; },
        +[](ReadingKey& k) { k.reference_type = 1; }, +[](ReadingKey& k) { k.data_type = "EyHx"; },
        +[](ReadingKey& k) { k.dipole = 25.0F; }}) {
    ReadingKey changed = key;
    change(changed);
    EXPECT_FALSE(same_station(key, changed));
  }
}
