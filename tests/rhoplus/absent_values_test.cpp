// A value that has gone under a mask that stayed: nothing that takes values from merged curves may take it.
#include <algorithm>
#include <filesystem>

#include "core/absent_value.h"
#include "core/undo_stack.h"
#include "display/profile_plot.h"
#include "display/station_plot.h"
#include "occam/setup/create_inversion.h"
#include "output/zonge.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"
#include "rhoplus/data_rows.h"
#include "rhoplus/fit_plot.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

namespace {

using namespace Module_averaged_data;
using Module_database::field_phase;
using Module_database::field_resistivity;

constexpr std::size_t no_resistivity = 0;  // 1 Hz
constexpr std::size_t no_phase = 1;        // 2 Hz
constexpr std::size_t neither = 2;         // 4 Hz

class Absent_values : public SurveyTest {
 protected:
  /// Three stations with seven frequencies; at the first one three have lost values to masks of all repeats.
  Absent_values() {
    new_survey();
    reset_data_sets();
    made::store_line(3);
    for (const double station : {100.0, 200.0, 300.0}) {
      dao::Recordset& files = Module_database::open_survey().files;
      files.add_new();
      files.set_text("LineNumber", "200E");
      files.set_double("Station", station);
      files.set_long("ReferenceType", 0);
      files.set_single("DipoleLength", 50.0F);
      files.update();
    }
    EXPECT_EQ(load_selected_profile(), 0);
    EXPECT_EQ(load_selected_station({}), 0);
    EXPECT_EQ(load_selected_repeats(), 0);
    const auto mask = [](double frequency, OutlierField field) {
      EXPECT_EQ(clear_frequencies(FrequencyCommand::mask_at, frequency, field), Edit::changed);
    };
    mask(1.0, OutlierField::resistivity);
    mask(2.0, OutlierField::phase);
    mask(4.0, OutlierField::both);
    const Module_database::Curve& merged = data_sets().station.slots.front().reading.curve;
    for (const std::size_t point : {no_resistivity, no_phase, neither}) {
      for (const int field : {field_resistivity, field_phase}) {
        EXPECT_EQ(merged.counts_at(field, point), 1);
        EXPECT_EQ(merged.value(field, point) == no_data, is_gone(field, point));
      }
    }
  }
  ~Absent_values() override { Module_Brenlox::clear_undo(); }

  static bool is_gone(int field, std::size_t point) {
    return point == neither || (field == field_resistivity ? point == no_resistivity : point == no_phase);
  }

  static constexpr std::size_t points = 7;
  const Module_database::LineSelection line{"200E", 0, "ExHy", 50.0F};
};

}  // namespace

TEST_F(Absent_values, Are_in_no_avg_row) {
  int rows = 0;
  ASSERT_EQ(
      Module_output::output_zonge(line, folder.path("a.avg"), {}, rows,
                                  {std::chrono::year(2024), std::chrono::month(3), std::chrono::day(9)}),
      0);
  EXPECT_EQ(rows, 7 + 7 + 4);
  const std::string avg = file_contents(folder.path("a.avg"));
  for (const char* const row :
       {"      100      1.000", "      100      2.000", "      100      4.000", "E+32"}) {
    EXPECT_EQ(avg.find(row), std::string::npos) << row;
  }
  EXPECT_NE(avg.find("      100      8.000"), std::string::npos);
}

TEST_F(Absent_values, Are_unused_in_rhoplus_tables_grid_and_graph) {
  Module_rhoplus::StationInversion inversion;
  Module_output::RhoplusSettings settings;
  settings.exclude_data = 0;
  ASSERT_EQ(
      Module_rhoplus::invert_station_in_memory(made::key(0.0F), made::frequencies(), settings, inversion), 0);
  const auto grid = Module_rhoplus::data_rows(inversion);
  const auto graph = Module_rhoplus::fit_plot(inversion, made::frequencies());
  ASSERT_EQ(inversion.tables.data.size(), points);
  for (std::size_t i = 0; i < points; ++i) {
    SCOPED_TRACE(i);
    const auto& row = inversion.tables.data[i];
    EXPECT_EQ(row.use_resistivity, is_gone(field_resistivity, i) ? 0.0F : 1.0F);
    EXPECT_EQ(row.use_phase, is_gone(field_phase, i) ? 0.0F : 1.0F);
    EXPECT_GT(std::min(row.phase, row.resistivity), 0.0F);
    EXPECT_EQ(grid[i].use_resistivity, !is_gone(field_resistivity, i));
    EXPECT_EQ(grid[i].use_phase, !is_gone(field_phase, i));
    EXPECT_EQ(is_absent(graph.resistivity.table.series[0].y[i]), is_gone(field_resistivity, i));
    EXPECT_EQ(is_absent(graph.phase.table.series[0].y[i]), is_gone(field_phase, i));
  }
  // A merged curve from a file has what came with it where others have statistics of all repeats.
  inversion.merged.curve.value(Module_database::field_all_phase, neither) = no_data;
  const std::string lines =
      Module_output::rhoplus_tables(inversion.merged, made::frequencies(), settings).data_lines;
  EXPECT_EQ(lines.find("-1000"), std::string::npos) << lines;
}

TEST_F(Absent_values, Are_no_occam_data) {
  Module_occam::InversionInputs inputs;
  inputs.use_rhoplus_error = false;
  inputs.directory = folder.path("");
  inputs.occam_directory = "run";
  Module_occam::CreatedInversion created;
  ASSERT_EQ(Module_occam::create_inversion(line, inputs, {}, {}, created), 0);
  EXPECT_EQ(created.data_count, 3 * 2 * 7 - 4);
  const std::string data = file_contents((folder.folder() / "run" / "occamdat").string());
  const auto has_row = [&data](const char* site_frequency_type) {
    return data.find(std::string("\r\n     1           ") + site_frequency_type) != std::string::npos;
  };
  EXPECT_TRUE(!has_row("1       5") && has_row("1       6"));
  EXPECT_TRUE(has_row("2       5") && !has_row("2       6"));
  EXPECT_FALSE(has_row("3"));
  EXPECT_TRUE(has_row("4       5") && has_row("4       6"));
}

TEST_F(Absent_values, Are_not_drawn_and_can_not_be_masked) {
  const auto station = Module_display_data::station_plot(false);
  const auto profile = Module_display_data::profile_plot();
  for (std::size_t i = 0; i < points; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(is_absent(station.resistivity.table.series[0].y[i]), is_gone(field_resistivity, i));
    EXPECT_EQ(is_absent(station.phase.table.series[0].y[i]), is_gone(field_phase, i));
    EXPECT_EQ(is_absent(profile.resistivity.table.series[i].y[0]), is_gone(field_resistivity, i));
    EXPECT_EQ(is_absent(profile.phase.table.series[i].y[0]), is_gone(field_phase, i));
  }
  EXPECT_EQ(toggle_station_point(0, no_resistivity, Component::resistivity), Edit::nothing);
  EXPECT_EQ(toggle_profile_point(0, neither, Component::phase), Edit::nothing);
  EXPECT_EQ(toggle_station_point(0, no_resistivity, Component::phase), Edit::changed);
}
