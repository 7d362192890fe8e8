// A command that masks points of many stations and both modes, undone from wherever the user has gone since.
#include "core/undo_stack.h"
#include "display/marked_points.h"
#include "display/profile_plot.h"
#include "display/station_plot.h"
#include "reduction/edits/set_points.h"
#include "reduction/edits/undo.h"
#include "tests/display/made_survey.h"

using namespace Module_averaged_data;
using namespace Module_display_data;

namespace {

class MasksOfLine : public MadeSurveyTest {
 protected:
  /// Lines 200E with both modes at two stations and 300E with ExHy at one.
  void open_lines() {
    for (const double station : {100.0, 200.0}) {
      made::ReadingKey key = made::key(64.0F, station);
      key.data_type = "EyHx";
      made::store(key, 1, made::repeat_of(station, 1, false));
    }
    made::ReadingKey other = made::key(64.0F, 500.0);
    other.line = "300E";
    made::store(other, 1, made::repeat_of(500.0, 1, false));
    ASSERT_EQ(recalculate_merged(), 0);
    open_line(2);
  }

  static std::vector<CurvePoints> of_all_curves() {
    std::vector<CurvePoints> curves;
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT ID FROM ReadingsDataTable WHERE ReductionType = 2 AND LineNumber = '200E' ORDER BY ID");
    for (; !rows.eof(); rows.move_next()) {
      curves.push_back({rows.get_long("ID"), {{4.0F, Component::resistivity, false}}});
    }
    EXPECT_EQ(curves.size(), 4U);
    return curves;
  }

  void go(const Redisplay& where) {
    ASSERT_GT(where.station_to_display, 0);
    ASSERT_FALSE(display_station(where.station_to_display, {}).failed);
  }

  /// Displays what an undo asks for. All loaded masks are those of the survey.
  static void show(const UndoResult& result) {
    ASSERT_EQ(result.edit, Edit::changed);
    ASSERT_GT(result.station_index, 0);
    ASSERT_FALSE(display_station(result.station_index, {}).failed);
    for (const StationSlot& slot : data_sets().station.slots) {
      EXPECT_EQ(slot.reading.curve.mask,
                Module_database::read_reading(made::row(slot.reading.ID)).curve.mask);
    }
    for (const ProfileColumn& column : data_sets().profile.columns) {
      const Module_database::Curve curve = Module_database::read_reading(made::row(column.ID)).curve;
      EXPECT_EQ(column.mask[2][0], curve.counts_at(1, 2)) << column.station;
    }
  }
};

}  // namespace

TEST_F(MasksOfLine, Are_undone_after_a_change_of_data_type_and_line) {
  open_lines();
  ASSERT_EQ(session().current_data_type, "EyHx");
  const std::string before = made::whole_readings_table();
  ASSERT_EQ(set_points(of_all_curves()), Edit::changed);
  EXPECT_EQ(data_sets().profile.columns[1].mask[2][0], 0);
  const std::string masked = made::whole_readings_table();

  go(choose_data_type("ExHy"));
  EXPECT_EQ(data_sets().profile.columns[1].mask[2][0], 0);
  show(undo_last_change());
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(session().current_data_type, "ExHy") << "its curves were changed as well";
  EXPECT_EQ(data_sets().profile.columns[1].mask[2][0], 1);

  show(redo_last_change());
  EXPECT_TRUE(made::whole_readings_table() == masked);
  go(choose_line(1, "300E"));
  show(undo_last_change());
  EXPECT_TRUE(made::whole_readings_table() == before);
  EXPECT_EQ(session().current_line, "200E") << "where something has changed";
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);

  go(choose_line(1, "300E"));
  show(redo_last_change());
  EXPECT_TRUE(made::whole_readings_table() == masked);
  EXPECT_EQ(Module_Brenlox::top_undo().size(), 4U);
}

TEST_F(MasksOfLine, Are_ringed_in_the_graphs_while_they_are_proposed) {
  open_lines();
  const std::int32_t ID = data_sets().station.slots[0].reading.ID;
  const auto styles = [] {
    const GraphPair station = station_plot(false);
    const GraphPair profile = profile_plot(LineAxis());
    return std::vector<int>{station.resistivity.point_styles[0][2], station.phase.point_styles[0][2],
                            profile.resistivity.point_styles[2][0], profile.phase.point_styles[2][0],
                            profile.phase.point_styles[2][1]};
  };
  const std::vector<int> before = styles();
  mark_points({{ID, 4.0F, Component::phase}, {ID, 8.0F, Component::resistivity}});
  std::vector<int> ringed = before;
  ringed[1] += graph::ringed;
  ringed[3] += graph::ringed;
  EXPECT_EQ(styles(), ringed);
  mark_points({});
  EXPECT_EQ(styles(), before);
}
