// Masks of many merged curves as one command: all of them or none, and back again.
#include "reduction/edits/set_points.h"

#include <cstdlib>
#include <filesystem>

#include "core/absent_value.h"
#include "core/scope_guard.h"
#include "core/undo_stack.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/undo.h"
#include "tests/reduction/made_line.h"
#include "tests/support/read_only_folder.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;

namespace {

class SetPoints : public SurveyTest {
 public:
  SetPoints() {
    new_survey();
    Module_Brenlox::clear_undo();
    reset_data_sets();
    for (const double station : {100.0, 200.0, 300.0}) {
      for (const bool fast : {false, true}) {
        made::ReadingKey key = made::key(fast ? 256.0F : 64.0F, station);
        key.data_type = "EyHx";
        made::store(key, 1, made::repeat_of(station, 1, fast));
      }
    }
    EXPECT_EQ(recalculate_merged(), 0);
    made::store_line(3);
    load();
    interface->progress.clear();
  }
  ~SetPoints() override { Module_Brenlox::clear_undo(); }

 protected:
  static void load() {
    ASSERT_EQ(load_selected_profile(), 0);
    ASSERT_EQ(load_selected_station({}), 0);
    ASSERT_EQ(load_selected_repeats(), 0);
  }

  static std::int32_t merged(double station, const std::string& data_type) {
    const dao::Recordset row = Module_database::open_survey().database.open_recordset(
        "SELECT ID FROM ReadingsDataTable WHERE ReductionType = 2 AND Station = " + std::to_string(station) +
        " AND DataType = '" + data_type + "'");
    return row.get_long("ID");
  }

  /// A resistivity and a phase at all stations and modes.
  static std::vector<CurvePoints> of_the_line() {
    std::vector<CurvePoints> curves;
    for (const double station : {100.0, 200.0, 300.0}) {
      for (const char* const data_type : {"ExHy", "EyHx"}) {
        curves.push_back({merged(station, data_type),
                          {{4.0F, Component::resistivity, false}, {16.0F, Component::phase, false}}});
      }
    }
    return curves;
  }

  static std::string mask_of(std::int32_t ID) {
    const Module_database::Curve curve = Module_database::read_reading(made::row(ID)).curve;
    std::string text;
    for (const std::int32_t flag : curve.mask) {
      text += flag == 1 ? '1' : '0';
    }
    return text;
  }

  /// What the data sets show of masks, which is what they would show when loaded now.
  static void expect_data_sets_are_current() {
    const DataSets shown = data_sets();
    load();
    ASSERT_EQ(shown.profile.columns.size(), data_sets().profile.columns.size());
    for (std::size_t i = 0; i < shown.profile.columns.size(); ++i) {
      EXPECT_EQ(shown.profile.columns[i].mask, data_sets().profile.columns[i].mask);
      EXPECT_EQ(shown.profile.columns[i].resistivity, data_sets().profile.columns[i].resistivity);
    }
    ASSERT_EQ(shown.station.slots.size(), data_sets().station.slots.size());
    for (std::size_t i = 0; i < shown.station.slots.size(); ++i) {
      EXPECT_EQ(shown.station.slots[i].reading.curve.mask, data_sets().station.slots[i].reading.curve.mask);
    }
  }
};

}  // namespace

TEST_F(SetPoints, Are_one_command_over_stations_and_modes) {
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(set_points(of_the_line()), Edit::changed);
  EXPECT_EQ(Module_Brenlox::undo_count(), 6U);
  EXPECT_EQ(Module_Brenlox::top_undo().size(), 6U) << "one command";
  for (const double station : {100.0, 200.0, 300.0}) {
    for (const char* const data_type : {"ExHy", "EyHx"}) {
      EXPECT_EQ(mask_of(merged(station, data_type)), "11110111101111") << "1 2 4 8 16 32 64 Hz";
    }
  }
  expect_data_sets_are_current();
  const std::string masked = made::whole_readings_table();
  ASSERT_EQ(recalculate_merged(), 0);
  EXPECT_TRUE(made::whole_readings_table() == masked) << "computing again keeps them and changes nothing";

  const UndoResult undone = undo_last_change();
  EXPECT_EQ(undone.edit, Edit::changed);
  EXPECT_EQ(undone.station_index, 1) << "who looks at one of the curves stays there";
  EXPECT_FALSE(undone.other_selection);
  EXPECT_TRUE(made::whole_readings_table() == before);
  session().current_station_index = 1;
  session().current_station = 100.0;
  expect_data_sets_are_current();
  ASSERT_EQ(redo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == masked);
  session().current_station_index = 1;
  session().current_station = 100.0;
  expect_data_sets_are_current();
}

TEST_F(SetPoints, Take_what_is_there_and_leave_the_rest) {
  const std::int32_t ID = merged(200.0, "ExHy");
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + std::to_string(ID));
  StoredReading curve = Module_database::read_reading(rows);
  curve.curve.value(Module_database::field_phase, 1) = no_data;
  rows.edit();
  Module_database::write_curve(rows, curve.curve);
  rows.update();
  const std::string before = made::whole_readings_table();
  const std::vector<CurvePoints> nothing{{ID, {{3.0F, Component::phase, false}}},  // no such frequency
                                         {ID, {{2.0F, Component::phase, false}}},  // no value
                                         {ID, {{1.0F, Component::phase, true}}},   // counts already
                                         {99999, {{1.0F, Component::phase, false}}},
                                         {ID, {}}};
  EXPECT_EQ(set_points(nothing), Edit::nothing);
  EXPECT_EQ(set_points({}), Edit::nothing);
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);

  // The same curve twice in a command, and back by a later one.
  const std::vector<CurvePoints> twice{{ID, {{1.0F, Component::phase, false}}},
                                       {99999, {{1.0F, Component::phase, false}}},
                                       {ID, {{8.0F, Component::phase, false}}}};
  ASSERT_EQ(set_points(twice), Edit::changed);
  EXPECT_EQ(mask_of(ID), "10111110111111");
  const std::vector<CurvePoints> back{{ID, {{1.0F, Component::phase, true}}}};
  ASSERT_EQ(set_points(back), Edit::changed);
  EXPECT_EQ(mask_of(ID), "11111110111111");
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
}

TEST_F(SetPoints, Leave_everything_as_it_was_when_stopped_or_failed) {
  const std::vector<CurvePoints> curves = of_the_line();
  const std::string before = made::whole_readings_table();
  int asked = 0;
  interface->stop = [&asked] { return ++asked == 4; };  // the button is pressed once
  EXPECT_EQ(set_points(curves), Edit::nothing);
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_FALSE(interface->progress.empty());
  interface->stop = [] { return false; };

  dao::Recordset row = made::row(curves[4].ID);
  row.edit();
  row.set_long("NumFrequencies", 99);
  row.update();
  const std::string damaged = made::whole_readings_table();
  EXPECT_EQ(set_points(curves), Edit::failed);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_TRUE(made::whole_readings_table() == damaged) << "nor the rows before the damaged one";
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
  EXPECT_EQ(data_sets().profile.columns[0].mask[2][0], 1);
}

TEST_F(SetPoints, Are_refused_in_a_survey_that_can_only_be_read) {
  const std::vector<CurvePoints> curves = of_the_line();
  ASSERT_EQ(Module_database::close_database(), 0);
  // The copy that is opened needs a folder for all: where root runs this, the usual one may be root's alone.
  const std::filesystem::path scratch = folder.path("scratch");
  std::filesystem::create_directory(scratch);
  std::filesystem::permissions(scratch, std::filesystem::perms::all);
  const ScopeGuard as_before(
      [earlier = std::filesystem::temp_directory_path().string()] { setenv("TMPDIR", earlier.c_str(), 1); });
  setenv("TMPDIR", scratch.c_str(), 1);
  const ReadOnlyFolder read_only(folder.path(""));
  ASSERT_EQ(Module_database::open_database(), 0);
  interface.take_messages();
  const std::string before = made::whole_readings_table();
  EXPECT_EQ(set_points(curves), Edit::failed);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
}
