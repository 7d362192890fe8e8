// New values of many readings as one command: all of them or none, and back again.
#include "reduction/edits/edit_many.h"

#include <algorithm>

#include "core/undo_stack.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/undo.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;
using Module_Brenlox::UndoFlags;
using Module_Brenlox::UndoMask;
using Module_Brenlox::UndoStatic;

namespace {

class EditMany : public SurveyTest {
 public:
  EditMany() {
    new_survey();
    Module_Brenlox::clear_undo();
    reset_data_sets();
    made::store_line(3);
    EXPECT_EQ(recalculate_merged(), 0);
    interface->progress.clear();
  }
  ~EditMany() override { Module_Brenlox::clear_undo(); }

 protected:
  static std::vector<std::int32_t> rows_of(const std::string& criteria) {
    std::vector<std::int32_t> rows;
    dao::Recordset found = Module_database::open_survey().database.open_recordset(
        "SELECT ID FROM ReadingsDataTable WHERE " + criteria + " ORDER BY ID");
    for (; !found.eof(); found.move_next()) {
      rows.push_back(found.get_long("ID"));
    }
    return rows;
  }

  /// The first repeat of each station and scan rate switched off, and the first point of the second masked.
  static std::vector<UndoEntry> of_the_line() {
    std::vector<UndoEntry> entries;
    for (const std::int32_t ID : rows_of("ReductionType = 0 AND EventNumber = 1")) {
      entries.push_back({ID, UndoFlags{false, true, true}});
    }
    for (const std::int32_t ID : rows_of("ReductionType = 0 AND EventNumber = 2")) {
      Module_database::Curve curve = Module_database::read_reading(made::row(ID)).curve;
      curve.counts_at(1, 0) = 0;
      const auto bytes = Module_database::bytes_of(curve.mask);
      entries.push_back(
          {ID, UndoMask{static_cast<std::int32_t>(curve.count()), {bytes.begin(), bytes.end()}}});
    }
    return entries;
  }
};

}  // namespace

TEST_F(EditMany, Is_one_command_over_stations_and_scan_rates_and_what_follows_is_computed) {
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(edit_many(of_the_line()), Edit::changed);
  EXPECT_EQ(Module_Brenlox::top_undo().size(), 12U) << "two repeats of three stations and two scan rates";
  const std::string edited = made::whole_readings_table();
  EXPECT_FALSE(edited == before);
  ASSERT_EQ(recalculate_merged(), 0);
  EXPECT_TRUE(made::whole_readings_table() == edited) << "averages and merged curves have followed";

  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
  ASSERT_EQ(redo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == edited);
}

TEST_F(EditMany, Takes_all_repeats_of_a_station_away_and_gives_what_was_set_on_its_curves_back) {
  const std::vector<std::int32_t> merged = rows_of("ReductionType = 2 AND Station = 200");
  ASSERT_EQ(edit_many(std::vector<UndoEntry>{{merged.front(), UndoStatic{2.5F}}}), Edit::changed);
  const std::string before = made::whole_readings_table();
  std::vector<UndoEntry> entries;
  for (const std::int32_t ID : rows_of("ReductionType = 0 AND Station = 200 AND SampleRate = 256")) {
    entries.push_back({ID, UndoFlags{false, false, false}});
  }
  entries.push_back({99999, UndoFlags{}});
  entries.push_back({merged.front(), UndoFlags{true, false, true}});
  ASSERT_EQ(edit_many(entries), Edit::changed);
  EXPECT_FALSE(made::whole_readings_table() == before);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
}

TEST_F(EditMany, Leaves_everything_as_it_was_after_a_stop_or_without_a_reading) {
  const std::string before = made::whole_readings_table();
  EXPECT_EQ(edit_many({}), Edit::nothing);
  EXPECT_EQ(edit_many(std::vector<UndoEntry>{{99999, UndoFlags{}}}), Edit::nothing);
  int asked = 0;
  interface->stop = [&asked] { return ++asked > 2; };
  EXPECT_EQ(edit_many(of_the_line()), Edit::nothing);
  EXPECT_FALSE(interface->progress.empty());
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
}

TEST_F(EditMany, Can_be_stopped_at_any_step_and_undone_with_a_stop) {
  const std::string before = made::whole_readings_table();
  int steps = 0;
  interface->stop = [&steps] { return ++steps < 0; };
  ASSERT_EQ(edit_many(of_the_line()), Edit::changed);
  const std::string edited = made::whole_readings_table();
  EXPECT_GE(steps, 3 * 12) << "noting, writing and computing";
  EXPECT_EQ(interface->progress.front(), 0);
  EXPECT_TRUE(std::ranges::is_sorted(interface->progress.begin(), std::ranges::find(interface->progress, -1)))
      << "one bar over the whole";
  for (const int last : {5, 18, 30}) {
    SCOPED_TRACE(last);
    int asked = 0;
    interface->stop = [&] { return ++asked > last; };
    EXPECT_EQ(undo_last_change().edit, Edit::nothing);
    EXPECT_TRUE(made::whole_readings_table() == edited);
    EXPECT_EQ(Module_Brenlox::top_undo().size(), 12U);
  }
  interface->stop = [] { return false; };
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
}

// What an undo computes anyhow takes most of the memory that a command needs.
TEST_F(EditMany, Keeps_the_values_of_derived_rows_only_where_an_undo_needs_them) {
  const auto kept_bytes = [] {
    std::size_t bytes = 0;
    for (const UndoEntry& entry : Module_Brenlox::top_undo()) {
      bytes += entry.reduction == nullptr ? 0 : entry.reduction->average.data_bytes.size();
    }
    return bytes;
  };
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(edit_many(of_the_line()), Edit::changed);
  EXPECT_EQ(kept_bytes(), 0U) << "other repeats are still in use";
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);

  std::vector<UndoEntry> off;
  for (const std::int32_t ID : rows_of("ReductionType = 0 AND Station = 200 AND SampleRate = 256")) {
    off.push_back({ID, UndoFlags{false, true, true}});
  }
  ASSERT_EQ(edit_many(off), Edit::changed);
  EXPECT_GT(kept_bytes(), 0U) << "nothing is left to compute from";
  std::vector<UndoEntry> on = off;
  for (UndoEntry& entry : on) {
    entry.earlier = UndoFlags{true, true, true};
  }
  const std::string without = made::whole_readings_table();
  ASSERT_EQ(edit_many(on), Edit::changed);
  EXPECT_GT(kept_bytes(), 0U) << "before there was nothing to compute from";
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == without);
  ASSERT_EQ(undo_last_change().edit, Edit::changed);
  EXPECT_TRUE(made::whole_readings_table() == before);
}

TEST_F(EditMany, Undo_leaves_a_row_alone_that_belongs_to_another_reading_by_now) {
  const std::int32_t ID = rows_of("ReductionType = 2").front();
  const std::vector<UndoEntry> factor{{ID, UndoStatic{3.0F}}};
  ASSERT_EQ(edit_many(factor), Edit::changed);
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + std::to_string(ID));
  rows.edit();
  rows.set_double("Station", 4321.0);
  rows.update();
  const std::string before = made::whole_readings_table();
  EXPECT_EQ(undo_last_change().edit, Edit::nothing);
  EXPECT_TRUE(made::whole_readings_table() == before);
}
