// Edits of masks, flags and factors: what each changes, and that undo and redo lead back and forth.
#include <functional>
#include <limits>

#include "core/absent_value.h"
#include "core/undo_stack.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"
#include "reduction/edits/undo.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;
using Module_Brenlox::redo_count;
using Module_Brenlox::undo_count;

namespace {

class Edits : public SurveyTest {
 public:
  Edits() {
    new_survey();
    Module_Brenlox::clear_undo();
    reset_data_sets();
  }
  ~Edits() override { Module_Brenlox::clear_undo(); }

 protected:
  static void load() {
    ASSERT_EQ(load_selected_profile(), 0);
    ASSERT_EQ(load_selected_station({}), 0);
    ASSERT_EQ(load_selected_repeats(), 0);
  }

  /// Repeats of one key, reduced and loaded, without a line around them.
  static void store_repeats(const std::vector<std::vector<made::Point>>& repeats) {
    for (std::size_t i = 0; i < repeats.size(); ++i) {
      made::store(made::key(), static_cast<int>(i) + 1, made::reading(repeats[i]));
    }
    session().frequencies = made::frequencies();
    ASSERT_EQ(load_repeat_data(made::key(), session().frequencies, data_sets().repeats), 0);
  }

  /// The masks of a field over a slot's points, as stored and as loaded, which are the same.
  static std::string masks(std::size_t slot, int field) {
    const StoredReading& loaded = data_sets().repeats.slots[slot].reading;
    const StoredReading stored = Module_database::read_reading(made::row(loaded.ID));
    EXPECT_EQ(stored.curve.mask, loaded.curve.mask);
    std::string text;
    for (std::size_t i = 0; i < stored.curve.count(); ++i) {
      text += stored.curve.counts_at(field, i) == 1 ? '1' : '0';
    }
    return text;
  }
  static StoredReading stored(std::int32_t ID) { return Module_database::read_reading(made::row(ID)); }
};

const std::vector<made::Point> five_points{{1.0F, 10.0F, 10.0F},
                                           {2.0F, 10.0F, -10.0F},
                                           {4.0F, 10.0F, 10.0F},
                                           {8.0F, 10.0F, -10.0F},
                                           {16.0F, 10.0F, 10.0F}};

}  // namespace

TEST_F(Edits, Frequencies_are_cleared_and_reset_by_range) {
  struct Case {
    const char* name;
    FrequencyCommand command;
    double frequency;
    OutlierField field;
    const char* resistivity;
    const char* phase;
  };
  using enum FrequencyCommand;
  const Case cases[] = {
      // each goes on from the one before
      {"zero", mask_from, 0.0, OutlierField::both, "11111", "11111"},
      {"f <= within the tolerance", mask_up_to, 1.99995, OutlierField::resistivity, "00111", "11111"},
      {"f = beyond the tolerance", mask_at, 4.0002, OutlierField::both, "00111", "11111"},
      {"f = within the tolerance", mask_at, 4.00005, OutlierField::both, "00011", "11011"},
      {"f >=", mask_from, 16.00005, OutlierField::phase, "00011", "11010"},
      {"R <=", reset_up_to, 1.0, OutlierField::both, "10011", "11010"},
      {"R =", reset_at, 4.0, OutlierField::resistivity, "10111", "11010"},
      {"R >=", reset_from, 8.0, OutlierField::both, "10111", "11011"},
      {"reset all of the phase", reset_all, 0.0, OutlierField::phase, "10111", "11111"},
      {"negative phases whatever the field", mask_negative_phases, 0.0, OutlierField::resistivity, "10111",
       "10101"},
      {"reset all", reset_all, 0.0, OutlierField::both, "11111", "11111"},
  };
  store_repeats({five_points, five_points});
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string before = masks(2, 1) + masks(2, 2);
    const std::size_t undo_before = undo_count();
    const Edit edit = clear_frequencies(c.command, c.frequency, c.field);
    const bool changes = before != std::string(c.resistivity) + c.phase;
    EXPECT_EQ(edit, changes ? Edit::changed : Edit::nothing);
    EXPECT_EQ(undo_count(), undo_before + (changes ? 2U : 0U));
    for (const std::size_t slot : {1U, 2U}) {
      EXPECT_EQ(masks(slot, 1), c.resistivity);
      EXPECT_EQ(masks(slot, 2), c.phase);
    }
  }
}

TEST_F(Edits, Negative_phases_take_the_lowest_frequencies_with_them) {
  const std::vector<made::Point> points{{0.0001F, 10.0F, 40.0F}, {0.0002F, 10.0F, 40.0F}};
  store_repeats({points, points});
  EXPECT_EQ(clear_frequencies(FrequencyCommand::mask_negative_phases, 0.0, OutlierField::resistivity),
            Edit::changed);
  EXPECT_EQ(masks(1, 1), "01");
  EXPECT_EQ(masks(1, 2), "11");
}

TEST_F(Edits, Outliers_are_clipped_point_by_point) {
  // Point 0 has the values 1..4 in mixed order; at point 1 two are equal; the third repeat is one point
  // short.
  const auto point = [](float frequency, float value) { return made::Point{frequency, value, value}; };
  store_repeats({{point(1.0F, 3.0F), point(2.0F, 5.0F)},
                 {point(1.0F, 1.0F), point(2.0F, 5.0F)},
                 {point(2.0F, 4.0F)},
                 {point(1.0F, 2.0F), point(2.0F, 1.0F)}});
  const auto all_masks = [] {
    return masks(1, 1) + ' ' + masks(2, 1) + ' ' + masks(3, 1) + ' ' + masks(4, 1);
  };
  EXPECT_EQ(clip_outliers(ClipEnds::both, 2, OutlierField::both), Edit::nothing);
  EXPECT_EQ(interface.take_messages(),
            std::vector<std::string>{
                "There are not enough data values to allow this number of outliers to be clipped"});
  for (const int count : {0, -1}) {
    EXPECT_EQ(clip_outliers(ClipEnds::top, count, OutlierField::both), Edit::nothing);
  }
  EXPECT_TRUE(interface.take_messages().empty());

  EXPECT_EQ(clip_outliers(ClipEnds::top, 1, OutlierField::resistivity), Edit::changed);
  EXPECT_EQ(all_masks(), "11 10 0 11");  // of the equal ones the later repeat counts as the higher
  EXPECT_EQ(masks(2, 2), "11");
  EXPECT_EQ(undo_count(), 4U);  // every repeat
  EXPECT_EQ(Module_Brenlox::top_undo().size(), 4U) << "as one command";
  EXPECT_EQ(clip_outliers(ClipEnds::both, 1, OutlierField::resistivity), Edit::changed);
  EXPECT_EQ(all_masks(), "01 00 0 11") << "three are left at point 0, two at point 1";
  EXPECT_EQ(clip_outliers(ClipEnds::bottom, 2, OutlierField::resistivity), Edit::nothing);
}

TEST_F(Edits, Readings_that_are_switched_off_are_no_outliers) {
  store_repeats({{{1.0F, 1.0F, 1.0F}}, {{1.0F, 2.0F, 2.0F}}, {{1.0F, 9.0F, 9.0F}}});
  ASSERT_EQ(set_repeat_use(3, UseFlag::resistivity, false), Edit::changed);
  ASSERT_EQ(clip_outliers(ClipEnds::top, 1, OutlierField::both), Edit::changed);
  EXPECT_EQ(masks(3, 1) + masks(2, 1), "10");  // m is 2, one goes
  EXPECT_EQ(masks(3, 2) + masks(2, 2), "01");
  ASSERT_EQ(set_repeat_use(2, UseFlag::reading, false), Edit::changed);
  EXPECT_EQ(clip_outliers(ClipEnds::top, 1, OutlierField::resistivity), Edit::nothing);  // m is 1
}

TEST_F(Edits, A_masked_point_changes_average_merged_curve_and_profile) {
  made::store_line(2);
  load();
  ASSERT_EQ(toggle_repeat_point(4, 0, Component::resistivity), Edit::changed);
  EXPECT_EQ(masks(4, 1), "01111");
  EXPECT_EQ(masks(4, 2), "11111");
  EXPECT_EQ(data_sets().repeats.slots[0].reading.curve.value(1, 0), 113.0F);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.value(1, 0), 113.0F);
  EXPECT_EQ(data_sets().profile.columns[0].resistivity[0], 113.0F);
  EXPECT_EQ(stored(data_sets().station.slots[0].reading.ID).curve.value(1, 0), 113.0F);

  // On the station: an average, then the merged curve; both follow in the other data sets.
  ASSERT_EQ(toggle_station_point(1, 1, Component::phase), Edit::changed);
  EXPECT_EQ(masks(0, 2), "10111");
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.value(2, 1), no_data);
  ASSERT_EQ(toggle_station_point(0, 2, Component::resistivity), Edit::changed);
  EXPECT_EQ(data_sets().profile.columns[0].mask[2][0], 0);
  ASSERT_EQ(toggle_profile_point(0, 2, Component::resistivity), Edit::changed);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.counts_at(1, 2), 1);
  ASSERT_EQ(toggle_profile_point(1, 0, Component::phase), Edit::changed);
  EXPECT_EQ(data_sets().profile.columns[1].mask[0][1], 0);
  EXPECT_EQ(stored(data_sets().profile.columns[1].ID).curve.counts_at(2, 0), 0);
  EXPECT_EQ(undo_count(), 5U);

  EXPECT_EQ(toggle_repeat_point(9, 0, Component::phase), Edit::nothing);
  EXPECT_EQ(toggle_repeat_point(1, 9, Component::phase), Edit::nothing);
  EXPECT_EQ(toggle_profile_point(0, 9, Component::phase), Edit::nothing);
}

TEST_F(Edits, A_masked_repeat_leaves_the_graph_of_another_station_alone) {
  made::store_line(2);
  load();
  const StoredReading shown = data_sets().station.slots[0].reading;
  const float profile = data_sets().profile.columns[1].resistivity[0];
  ASSERT_EQ(load_repeat_data(made::key(64.0F, 200.0), session().frequencies, data_sets().repeats), 0);
  ASSERT_EQ(toggle_repeat_point(4, 0, Component::resistivity), Edit::changed);
  EXPECT_NE(data_sets().profile.columns[1].resistivity[0], profile);
  EXPECT_EQ(data_sets().station.slots[0].reading.ID, shown.ID);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.data, shown.curve.data);
}

TEST_F(Edits, Use_flags_and_the_static_factor_are_stored_where_they_belong) {
  made::store_line(1);
  load();
  ASSERT_EQ(set_repeat_use(0, UseFlag::phase, false), Edit::changed);
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.value(2, 0), no_data);  // 1 Hz: only this scan rate
  EXPECT_EQ(data_sets().station.slots[0].reading.curve.value(2, 4), 42.5F);    // 16 Hz: the other one as well
  ASSERT_EQ(set_merged_use(UseFlag::resistivity, false), Edit::changed);
  EXPECT_FALSE(data_sets().profile.columns[0].UseResistivity);
  EXPECT_FALSE(data_sets().station.slots[0].reading.UseResistivity);
  EXPECT_FALSE(stored(data_sets().profile.columns[0].ID).UseResistivity);

  for (const float factor : {0.0F, -2.0F, 1.0F, std::numeric_limits<float>::infinity()}) {
    EXPECT_EQ(set_static_factor(factor), Edit::nothing) << factor;
  }
  ASSERT_EQ(set_static_factor(2.5F), Edit::changed);
  EXPECT_EQ(data_sets().profile.columns[0].ResOffset, 2.5F);
  EXPECT_EQ(data_sets().station.slots[0].reading.ResOffset, 2.5F);
  EXPECT_EQ(stored(data_sets().profile.columns[0].ID).ResOffset, 2.5F);
  EXPECT_EQ(undo_count(), 3U);
}

TEST_F(Edits, A_failure_leaves_survey_data_sets_and_undo_as_before) {
  made::store_line(1);
  load();
  dao::Recordset row = made::row(data_sets().repeats.slots[2].reading.ID);
  row.edit();
  row.set_long("NumFrequencies", 99);  // the average can't be computed
  row.update();
  const std::string before = made::whole_readings_table();
  EXPECT_EQ(toggle_repeat_point(1, 0, Component::phase), Edit::failed);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_EQ(made::whole_readings_table(), before);
  EXPECT_EQ(masks(1, 2), "11111");
  EXPECT_EQ(undo_count(), 0U);

  Module_database::open_survey().database.execute("DELETE FROM ReadingsDataTable WHERE ID = 1");
  EXPECT_EQ(toggle_repeat_point(1, 0, Component::phase), Edit::nothing);
}

TEST_F(Edits, Everything_can_be_undone_and_done_again) {
  made::store_line(3);
  load();
  const std::vector<std::function<Edit()>> edits{
      [] { return toggle_repeat_point(2, 1, Component::resistivity); },
      [] { return clip_outliers(ClipEnds::both, 1, OutlierField::both); },
      [] { return toggle_repeat_point(0, 3, Component::phase); },
      [] { return set_repeat_use(1, UseFlag::reading, false); },
      [] { return clear_frequencies(FrequencyCommand::mask_up_to, 2.0, OutlierField::phase); },
      [] { return toggle_station_point(2, 0, Component::resistivity); },
      [] { return toggle_station_point(0, 2, Component::phase); },
      [] { return toggle_profile_point(2, 5, Component::resistivity); },
      [] { return set_repeat_use(0, UseFlag::resistivity, false); },
      [] { return set_static_factor(3.0F); },
      [] { return set_merged_use(UseFlag::reading, false); },
  };
  std::vector<std::string> states{made::whole_readings_table()};
  for (const auto& edit : edits) {
    ASSERT_EQ(edit(), Edit::changed);
    states.push_back(made::whole_readings_table());
  }
  for (std::size_t state = states.size() - 1; state-- > 0;) {
    ASSERT_EQ(undo_last_change().edit, Edit::changed);
    ASSERT_TRUE(made::whole_readings_table() == states[state]) << state;
  }
  EXPECT_EQ(undo_count(), 0U);
  EXPECT_EQ(undo_last_change().edit, Edit::nothing);
  for (std::size_t state = 1; state < states.size(); ++state) {
    ASSERT_EQ(redo_last_change().edit, Edit::changed);
    ASSERT_TRUE(made::whole_readings_table() == states[state]) << state;
  }
  EXPECT_EQ(redo_last_change().edit, Edit::nothing);
}

TEST_F(Edits, Undo_gives_back_what_was_known_of_derived_curves) {
  // The last repeat tells nothing of itself: with it the derived curves have no facts, without it they do.
  for (const double station : {100.0, 200.0}) {
    for (int event = 1; event <= 3; ++event) {
      StoredReading repeat = made::with_errors(made::repeat_of(station, event, false), 3.0F, 0.5F);
      repeat.axes = {Module_database::ey_turned, 12.0F};
      repeat.curve.error_at(2, 1) = no_data;
      made::store(made::key(64.0F, station), event, repeat);
    }
    StoredReading bare = made::repeat_of(station, 4, false);
    bare.UseReading = false;
    made::store(made::key(64.0F, station), 4, bare);
  }
  ASSERT_EQ(recalculate_merged(), 0);
  made::store_line(0);
  load();
  ASSERT_EQ(rows_in("ReadingFactsTable"), 10);
  const std::vector<std::function<Edit()>> edits{
      [] { return toggle_repeat_point(2, 1, Component::resistivity); },
      [] { return set_repeat_use(4, UseFlag::reading, true); },
      [] { return toggle_station_point(0, 2, Component::phase); },
      [] { return toggle_repeat_point(4, 3, Component::resistivity); },
      [] { return set_repeat_use(4, UseFlag::reading, false); },
      [] { return set_repeat_use(0, UseFlag::resistivity, false); },
  };
  std::vector<std::string> states{made::whole_readings_table()};
  for (const auto& edit : edits) {
    ASSERT_EQ(edit(), Edit::changed);
    states.push_back(made::whole_readings_table());
  }
  for (int round = 0; round < 2; ++round) {
    for (std::size_t state = states.size() - 1; state-- > 0;) {
      ASSERT_EQ(undo_last_change().edit, Edit::changed);
      ASSERT_TRUE(made::whole_readings_table() == states[state]) << state;
      const StoredReading& shown = data_sets().repeats.slots[0].reading;
      StoredReading kept = shown;
      Module_database::read_facts(kept);
      EXPECT_EQ(shown.curve.errors, kept.curve.errors) << state;
    }
    for (std::size_t state = 1; state < states.size(); ++state) {
      ASSERT_EQ(redo_last_change().edit, Edit::changed);
      ASSERT_TRUE(made::whole_readings_table() == states[state]) << state;
    }
  }
}

TEST_F(Edits, Undo_leaves_no_trace_on_a_line_named_in_two_cases) {
  made::store_line(1);
  Module_database::open_survey().database.execute(
      "UPDATE ReadingsDataTable SET LineNumber = '200e' WHERE FileID > 0 AND EventNumber < 3");
  Module_database::open_survey().readings.requery();
  load();
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(toggle_repeat_point(0, 1, Component::resistivity), Edit::changed);
  const UndoResult undone = undo_last_change();
  EXPECT_EQ(undone.edit, Edit::changed);
  EXPECT_FALSE(undone.other_selection);
  EXPECT_TRUE(made::whole_readings_table() == before);
}

TEST_F(Edits, Undo_of_a_static_factor_keeps_the_scan_rate_that_is_shown) {
  made::store_line(1);
  session().current_scan_rate = 256.0;
  load();
  ASSERT_EQ(set_static_factor(2.5F), Edit::changed);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_EQ(session().current_scan_rate, 256.0);
}

TEST_F(Edits, Undo_moves_to_the_reading_and_keeps_the_profile_up_to_date) {
  made::store_line(3);
  session().current_station_index = 2;
  session().current_station = 200.0;
  session().current_profile_column = 2;
  session().current_scan_rate = 256.0;
  load();
  const float before = data_sets().profile.columns[1].resistivity[6];
  ASSERT_EQ(toggle_repeat_point(4, 3, Component::resistivity), Edit::changed);
  EXPECT_NE(data_sets().profile.columns[1].resistivity[6], before);

  session().current_station_index = 1;  // the user walks on
  session().current_station = 100.0;
  session().current_profile_column = 1;
  session().current_scan_rate = 64.0;
  load();
  const UndoResult undone = undo_last_change();
  EXPECT_EQ(undone.edit, Edit::changed);
  EXPECT_EQ(undone.station_index, 2);
  EXPECT_EQ(session().current_scan_rate, 256.0);
  EXPECT_EQ(session().current_station_index, -1);
  EXPECT_EQ(session().repeat_count, 0);
  EXPECT_EQ(data_sets().profile.columns[1].resistivity[6], before);
  EXPECT_EQ(data_sets().station.key.station, 100.0);
  EXPECT_EQ(redo_count(), 1U);
}

TEST_F(Edits, Redo_ends_with_a_new_edit_and_entries_of_gone_readings_are_dropped) {
  made::store_line(1);
  load();
  ASSERT_EQ(toggle_repeat_point(1, 0, Component::phase), Edit::changed);
  ASSERT_EQ(toggle_repeat_point(1, 1, Component::phase), Edit::changed);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  ASSERT_EQ(redo_count(), 1U);
  ASSERT_EQ(toggle_repeat_point(2, 0, Component::phase), Edit::changed);
  EXPECT_EQ(redo_count(), 0U);
  Module_database::open_survey().database.execute("DELETE FROM ReadingsDataTable WHERE ID = " +
                                                  std::to_string(data_sets().repeats.slots[2].reading.ID));
  EXPECT_EQ(undo_last_change().edit, Edit::nothing);
  EXPECT_EQ(undo_count(), 1U);
  EXPECT_EQ(redo_count(), 0U);
  EXPECT_EQ(undo_last_change().edit, Edit::changed);
}

TEST_F(Edits, Undo_gives_back_what_was_set_on_derived_curves_whose_length_changed) {
  made::store_line(2);
  made::store(made::key(64.0F), 9, made::reading({{0.5F, 10.0F, 10.0F}, {1.0F, 10.0F, 10.0F}}));
  load();
  ASSERT_EQ(recalculate_station(), 0);
  session().frequencies = made::frequencies();
  load();
  ASSERT_EQ(toggle_repeat_point(0, 2, Component::resistivity), Edit::changed);  // on the average
  ASSERT_EQ(toggle_station_point(0, 3, Component::phase), Edit::changed);       // on the merged curve
  ASSERT_EQ(set_repeat_use(0, UseFlag::phase, false), Edit::changed);
  dao::Recordset row = made::row(data_sets().repeats.slots[0].reading.ID);
  row.edit();
  row.set_single("ResOffset", 2.0F);
  row.set_single("PhaseOffset", -3.0F);
  row.update();
  ASSERT_EQ(recalculate_station(), 0);
  const std::size_t frequencies = data_sets().repeats.slots[0].reading.curve.count();

  std::vector<std::string> states{made::whole_readings_table()};
  ASSERT_EQ(set_repeat_use(5, UseFlag::reading, false), Edit::changed);  // 0.5 Hz goes, and all edits with it
  ASSERT_EQ(data_sets().repeats.slots[0].reading.curve.count(), frequencies - 1);
  ASSERT_TRUE(data_sets().repeats.slots[0].reading.UsePhase);
  states.push_back(made::whole_readings_table());
  for (const std::size_t slot : {1U, 2U, 3U, 4U, 5U, 1U}) {  // nothing is left to average; then one again
    ASSERT_EQ(set_repeat_use(slot, UseFlag::reading, slot == 5U || states.size() > 6), Edit::changed) << slot;
    states.push_back(made::whole_readings_table());
  }
  for (int round = 0; round < 2; ++round) {
    for (std::size_t state = states.size() - 1; state-- > 0;) {
      ASSERT_EQ(undo_last_change().edit, Edit::changed);
      ASSERT_TRUE(made::whole_readings_table() == states[state]) << state;
    }
    for (std::size_t state = 1; state < states.size(); ++state) {
      ASSERT_EQ(redo_last_change().edit, Edit::changed);
      ASSERT_TRUE(made::whole_readings_table() == states[state]) << state;
    }
  }
}

TEST_F(Edits, Undo_gives_back_a_mask_of_absence_over_two_scan_rates) {
  for (const float rate : {64.0F, 256.0F}) {
    for (int event = 1; event <= 2; ++event) {
      StoredReading repeat = made::reading({{1.0F, 10.0F, -120.0F}, {2.0F, 10.0F, 40.0F}});
      repeat.curve.counts_at(2, 0) = 0;  // as an import masks a phase below 0
      made::store(made::key(rate), event, repeat);
    }
  }
  session().frequencies = made::frequencies();
  StoredReading merged;
  for (const float rate : {64.0F, 256.0F}) {
    ASSERT_EQ(load_repeat_data(made::key(rate), session().frequencies, data_sets().repeats), 0);
  }
  ASSERT_EQ(merge_scan_rates(made::key(), session().frequencies, merged), 0);
  std::vector<std::string> states{made::whole_readings_table()};
  for (const float rate : {64.0F, 256.0F}) {
    ASSERT_EQ(load_repeat_data(made::key(rate), session().frequencies, data_sets().repeats), 0);
    ASSERT_EQ(clear_frequencies(FrequencyCommand::reset_all, 0.0, OutlierField::phase), Edit::changed);
    EXPECT_EQ(masks(0, 2), "11") << "there is a value now";
    states.push_back(made::whole_readings_table());
  }
  EXPECT_EQ(stored(merged.ID).curve.counts_at(2, 0), 1);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == states[1]);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == states[0]);
  EXPECT_EQ(stored(merged.ID).curve.counts_at(2, 0), 0);
  ASSERT_EQ(redo_last_change().edit, Edit::changed);
  ASSERT_EQ(redo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == states[2]);
}

TEST_F(Edits, Undo_removes_derived_rows_that_an_edit_has_made) {
  made::store_line(1);
  StoredReading off = made::reading({{1.0F, 10.0F, 10.0F}});
  off.UseReading = false;
  made::store(made::key(1024.0F), 1, off);
  session().current_scan_rate = 1024.0;
  load();
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(set_repeat_use(1, UseFlag::reading, true), Edit::changed);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=1"), 3);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
  ASSERT_EQ(redo_last_change().edit, Edit::changed);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=1"), 3);
}

TEST_F(Edits, Undo_goes_to_another_selection) {
  made::store_line(2);
  for (int event = 1; event <= 2; ++event) {  // with a frequency list of its own
    ReadingKey other = made::key(64.0F, 200.0);
    other.reference_type = 1;
    other.data_type = "EyHx";
    other.dipole = 25.0F;
    made::store(other, event,
                made::reading({{3.0F, 10.0F, 10.0F}, {5.0F, 10.0F * static_cast<float>(event), 10.0F}}));
  }
  session().current_reference_type = 1;
  session().current_data_type = "EyHx";
  session().current_dipole = 25.0F;
  session().current_station = 200.0;
  ASSERT_EQ(Module_database::load_selected_frequencies(), 0);
  load();
  ASSERT_EQ(recalculate_station(), 0);
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(toggle_repeat_point(2, 1, Component::resistivity), Edit::changed);

  session().current_reference_type = 0;
  session().current_data_type = "ExHy";
  session().current_dipole = 50.0F;
  session().current_station = 100.0;
  session().current_station_index = 1;
  ASSERT_EQ(Module_database::load_selected_frequencies(), 0);
  load();
  const UndoResult undone = undo_last_change();
  EXPECT_EQ(undone.edit, Edit::changed);
  EXPECT_EQ(undone.station_index, 2);
  EXPECT_TRUE(undone.other_selection);
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(session().current_reference_type, 1);
  EXPECT_EQ(session().current_data_type, "EyHx");
  EXPECT_EQ(session().current_dipole, 25.0F);
  EXPECT_EQ(session().frequencies.list, (std::vector<float>{3.0F, 5.0F}));
  EXPECT_TRUE(session().current_line.empty()) << "the profile is loaded again";
}
