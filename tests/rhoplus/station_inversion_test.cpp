#include <filesystem>
#include <functional>

#include "database/reading_facts.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "numerics/impedance/layered_earth.h"
#include "rhoplus/data_rows.h"
#include "rhoplus/fit_plot.h"
#include "rhoplus/inversion_ahead.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

using namespace Module_rhoplus;
using Module_averaged_data::Component;
namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

class Station_inversion : public SurveyTest {
 protected:
  /// The merged curve over 100 ohm-m above 10 ohm-m below 500 m, exact, with errors of 2 ohm-m and 1 degree.
  static StoredReading merged_over_two_layers() {
    const std::vector<numerics::impedance::Layer> ground{{100.0, 500.0}, {10.0, 0.0}};
    std::vector<made::Point> points;
    for (const float frequency : {0.125F, 0.5F, 2.0F, 8.0F, 32.0F, 128.0F, 512.0F, 2048.0F}) {
      const auto impedance = numerics::impedance::surface_impedance(ground, double{frequency});
      points.push_back(
          {frequency,
           static_cast<float>(numerics::impedance::apparent_resistivity(impedance, double{frequency})),
           static_cast<float>(numerics::impedance::phase_degrees(impedance))});
    }
    StoredReading reading = made::reading(points);
    for (std::size_t i = 0; i < points.size(); ++i) {
      reading.curve.value(3, i) = 2.0F;
      reading.curve.value(4, i) = 1.0F;
    }
    return reading;
  }
  [[nodiscard]] fs::path folder_of_run() const { return folder.folder() / "NRRef" / key.line; }
  static std::int32_t store(const StoredReading& reading) { return made::store(key, 0, reading, 2, -1); }

  inline static const ReadingKey key = made::key(0.0F, 1250.0);
};

}  // namespace

TEST_F(Station_inversion, Of_an_exact_two_layer_curve) {
  new_survey();
  StoredReading reading = merged_over_two_layers();
  reading.ResOffset = 2.0F;
  store(reading);
  StationInversion inversion;
  ASSERT_EQ(invert_station(key, made::frequencies(), {}, inversion), 0);
  ASSERT_EQ(inversion.run.status, numerics::rhoplus::rhoplus_ran) << inversion.run.message;
  EXPECT_EQ(inversion.scale, 2.0F);
  EXPECT_EQ(inversion.run.used_values, 16);
  EXPECT_LT(inversion.run.achieved_chi, 0.01F) << "exact data of a layered ground are one-dimensional";
  for (const numerics::rhoplus::RhoplusRow& row : inversion.tables.data) {
    EXPECT_NEAR(row.model_resistivity / row.resistivity, 1.0F, 1e-3F);
    EXPECT_NEAR(row.model_phase, row.phase, 0.05F);
  }
  const fs::path run_folder = folder_of_run();
  EXPECT_TRUE(fs::exists(run_folder / "tmd_1250.dat"));
  EXPECT_EQ(file_contents((run_folder / "tmd_1250.out").string()), inversion.log);

  StationInversion in_memory;
  ASSERT_EQ(invert_station_in_memory(key, made::frequencies(), {}, in_memory), 0);
  EXPECT_EQ(in_memory.run.achieved_chi, inversion.run.achieved_chi);
}

TEST_F(Station_inversion, A_damaged_curve_is_a_failure_with_one_message) {
  new_survey();
  dao::Recordset row = made::row(store(merged_over_two_layers()));
  row.edit();
  row.set_long("NumFrequencies", 99);
  row.update();
  StationInversion inversion;
  EXPECT_EQ(invert_station_in_memory(key, made::frequencies(), {}, inversion), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_EQ(invert_station(key, made::frequencies(), {}, inversion), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_FALSE(fs::exists(folder_of_run()));
}

TEST_F(Station_inversion, Without_data_leaves_no_files) {
  new_survey();
  StationInversion inversion;
  ASSERT_EQ(invert_station(key, made::frequencies(), {}, inversion), 0);
  EXPECT_EQ(inversion.merged.ID, 0);
  EXPECT_TRUE(fit_plot(inversion, made::frequencies()).empty());

  StoredReading masked = merged_over_two_layers();
  for (std::size_t i = 0; i < masked.curve.count(); ++i) {
    masked.curve.counts_at(1, i) = 0;
  }
  store(masked);
  ASSERT_EQ(invert_station(key, made::frequencies(), {}, inversion), 0);
  EXPECT_NE(inversion.merged.ID, 0);
  EXPECT_EQ(inversion.run.status, numerics::rhoplus::rhoplus_not_run);
  EXPECT_FALSE(fs::exists(folder_of_run() / "tmd_1250.dat"));
  EXPECT_FALSE(data_rows(inversion)[0].use_resistivity);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(Station_inversion, Begun_ahead_is_the_same_and_of_the_station_asked_for) {
  new_survey();
  store(merged_over_two_layers());
  StationInversion at_once;
  ASSERT_EQ(invert_station(key, made::frequencies(), {}, at_once), 0);
  const std::string control = file_contents((folder_of_run() / "tmd_1250.dat").string());
  ReadingKey other = key;
  other.station = 1300.0;
  for (const ReadingKey& begun : {key, other}) {
    fs::remove_all(folder_of_run());
    InversionAhead ahead;
    ASSERT_EQ(ahead.begin(begun, made::frequencies(), {}), 0);
    StationInversion inversion;
    ASSERT_EQ(ahead.finish(key, made::frequencies(), {}, inversion), 0);
    EXPECT_EQ(inversion.merged.ID, at_once.merged.ID);
    EXPECT_EQ(inversion.run.achieved_chi, at_once.run.achieved_chi);
    EXPECT_EQ(inversion.log, at_once.log);
    EXPECT_EQ(file_contents((folder_of_run() / "tmd_1250.dat").string()), control);
    EXPECT_EQ(file_contents((folder_of_run() / "tmd_1250.out").string()), at_once.log);
  }
}

TEST_F(Station_inversion, Results_are_there_where_files_can_not_be_left) {
  new_survey();
  store(merged_over_two_layers());
  StationInversion in_files;
  ASSERT_EQ(invert_station(key, made::frequencies(), {}, in_files), 0);
  EXPECT_EQ(in_files.missing_files, "");
  EXPECT_EQ(note_of(in_files), "");

  const fs::path log = folder_of_run() / "tmd_1250.out";
  const fs::path control = folder_of_run() / "tmd_1250.dat";
  struct Case {
    std::string told;
    std::function<void()> prepare;
  };
  const Case cases[] = {{"The log was not written: " + log.string() + ": ",
                         [&] {
                           fs::remove(log);
                           fs::create_directories(log / "in_the_way");
                         }},
                        {"No files were left: " + control.string() + ": ",
                         [&] {
                           fs::remove(control);
                           fs::create_directories(control / "in_the_way");
                         }},
                        {"No files were left: " + folder_of_run().string() + ": ", [&] {
                           fs::remove_all(folder.folder() / "NRRef");
                           ASSERT_FALSE(folder.write("NRRef", "in the way").empty());
                         }}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.told);
    c.prepare();
    StationInversion inversion;
    ASSERT_EQ(invert_station(key, made::frequencies(), {}, inversion), 0);
    EXPECT_EQ(inversion.run.status, numerics::rhoplus::rhoplus_ran);
    EXPECT_EQ(inversion.run.achieved_chi, in_files.run.achieved_chi);
    EXPECT_EQ(inversion.missing_files.rfind(c.told, 0), 0U) << inversion.missing_files;
    EXPECT_EQ(inversion.log, inversion.missing_files + "\r\n\r\n" + in_files.log);
    EXPECT_EQ(log_or_reason(inversion), inversion.log);
    EXPECT_EQ(note_of(inversion), c.told.substr(0, c.told.find(':')));
    inversion.run.limit_met = true;
    EXPECT_EQ(note_of(inversion), c.told.substr(0, c.told.find(':')) + "; The limit of iterations was met");
    EXPECT_FALSE(inversion.run.model.empty());
  }
  EXPECT_TRUE(interface.take_messages().empty()) << "a run over the line would end with the first message";
}

TEST_F(Station_inversion, Run_directories) {
  EXPECT_EQ(run_directory("/surveys/a.mdb", 0, "200E"), fs::path("/surveys/NRRef/200E"));
  EXPECT_EQ(run_directory("/surveys/a.mdb", 1, "200E"), fs::path("/surveys/RRef/200E"));
  EXPECT_EQ(run_directory("a.mdb", 2, "../up/10"), fs::path("./XRef/.._up_10"));
  EXPECT_EQ(run_directory("/surveys/a.mdb", 0, ".."), fs::path("/surveys/NRRef/__"));
}

TEST_F(Station_inversion, Graphs_and_grid_show_data_and_model) {
  new_survey();
  StoredReading reading = merged_over_two_layers();
  reading.ResOffset = 2.0F;
  reading.curve.counts_at(1, 2) = 0;
  reading.curve.counts_at(2, 2) = 0;
  store(reading);
  StationInversion inversion;
  ASSERT_EQ(invert_station(key, made::frequencies(), {}, inversion), 0);

  const Module_display_data::GraphPair plot = fit_plot(inversion, made::frequencies());
  const graph::PlotSeries& observed = plot.resistivity.table.series[series_observed];
  EXPECT_FLOAT_EQ(static_cast<float>(observed.y[1]), 2.0F * reading.curve.value(1, 1));
  EXPECT_FLOAT_EQ(static_cast<float>(observed.error[1]),
                  std::max(4.0F, 0.04F * 2.0F * reading.curve.value(1, 1)));
  EXPECT_FLOAT_EQ(static_cast<float>(observed.y[2]), 2.0F * reading.curve.value(1, 2));
  EXPECT_EQ(plot.resistivity.point_styles[series_observed][2], graph::masked_point);
  EXPECT_EQ(plot.resistivity.point_styles[series_observed][1], graph::used_point);
  EXPECT_LE(observed.error[2], graph::null_limit) << "not inverted";
  EXPECT_TRUE(fit_point_text(plot, series_observed, 2, Component::phase).ends_with(", masked"));
  StationInversion outlier = inversion;
  outlier.merged.curve.value(1, 2) = 1e6F;
  EXPECT_EQ(fit_plot(outlier, made::frequencies()).resistivity.y.maximum, plot.resistivity.y.maximum)
      << "a masked point has no say in the axes";
  session().hide_masked_data = true;
  EXPECT_LE(fit_plot(inversion, made::frequencies()).resistivity.table.series[series_observed].y[2],
            graph::null_limit);
  session().hide_masked_data = false;
  EXPECT_EQ(plot.resistivity.table.series[series_model].y.size(), reading.curve.count() - 1);
  for (const Module_display_data::PanePlot& pane : {plot.resistivity, plot.phase}) {
    EXPECT_LT(pane.series_styles[series_model].width, pane.series_styles[series_observed].width)
        << "what is wide is drawn on top: the model doesn't hide the data";
    EXPECT_TRUE(pane.series_styles[series_model].line && !pane.series_styles[series_observed].line);
  }
  EXPECT_EQ(fit_point_text(plot, series_observed, 99, Component::phase), "");
  EXPECT_EQ(fit_point_text(plot, series_observed, 0, Component::phase).rfind("Observed: 0.1250 Hz, ", 0), 0U);

  Frequencies all_but_the_lowest = made::frequencies();
  all_but_the_lowest.enabled[0] = 0;
  const Module_display_data::GraphPair switched = fit_plot(inversion, all_but_the_lowest);
  const graph::PlotSeries& phases = switched.phase.table.series[series_observed];
  EXPECT_LE(phases.y[0], graph::null_limit);
  EXPECT_GT(phases.y[1], graph::null_limit);
  EXPECT_DOUBLE_EQ(switched.phase.x.minimum, 0.9 * double{reading.curve.frequencies[1]});

  const std::vector<DataRowTexts> rows = data_rows(inversion);
  ASSERT_EQ(rows.size(), reading.curve.count());
  EXPECT_EQ(rows[0].texts[column_frequency], "0.1250");
  EXPECT_TRUE(rows[1].use_resistivity);
  EXPECT_EQ(rows[1].texts[column_observed_resistivity], rows[1].texts[column_inverted_resistivity]);
  EXPECT_FALSE(rows[2].use_phase);
  EXPECT_FALSE(rows[2].texts[column_observed_phase].empty()) << "masked data are shown in the grid";
  EXPECT_EQ(rows[2].texts[column_inverted_phase], "");
}

TEST_F(Station_inversion, Errors_of_files_are_drawn_and_relax_the_fit) {
  new_survey();
  StoredReading reading = merged_over_two_layers();
  reading.curve.value(2, 3) += 10.0F;  // no layered ground turns so fast
  reading.curve.error_at(2, 3) = 25.0F;
  reading.ResOffset = 2.0F;
  reading.curve.error_at(1, 1) = 30.0F;
  Module_database::write_facts(store(reading), reading.curve, {});
  StationInversion floors;
  StationInversion with_files;
  Module_output::RhoplusSettings settings;
  ASSERT_EQ(invert_station_in_memory(key, made::frequencies(), settings, floors), 0);
  settings.use_file_errors = 1;
  ASSERT_EQ(invert_station_in_memory(key, made::frequencies(), settings, with_files), 0);

  const auto drawn = fit_plot(floors, made::frequencies());
  const auto drawn_with_files = fit_plot(with_files, made::frequencies());
  const auto errors_at = [](const Module_display_data::GraphPair& plot, std::size_t point) {
    return std::pair(plot.resistivity.table.series[series_observed].error[point],
                     plot.phase.table.series[series_observed].error[point]);
  };
  EXPECT_EQ(errors_at(drawn, 3).second, 2.0) << "the floor";
  EXPECT_EQ(errors_at(drawn_with_files, 3).second, 25.0);
  EXPECT_EQ(errors_at(drawn_with_files, 1), std::pair(60.0, 2.0)) << "drawn with the static factor";
  EXPECT_EQ(errors_at(drawn_with_files, 5), errors_at(drawn, 5)) << "no error in the files";
  EXPECT_TRUE(
      fit_point_text(drawn_with_files, series_observed, 3, Component::phase).ends_with(" \u00b1 25.00"));
  EXPECT_LT(with_files.run.achieved_chi, 0.5F * floors.run.achieved_chi);
}

TEST_F(Station_inversion, The_model_is_drawn_as_stems) {
  EXPECT_TRUE(sheet_plot({}).table.series.empty());
  const std::vector<numerics::rhoplus::RhoplusLayer> model{{0.0F, 0.5F}, {250.0F, 40.0F}, {9000.0F, 1e30F}};
  const Module_display_data::PanePlot plot = sheet_plot(model);
  ASSERT_EQ(plot.table.series.size(), 3U);
  EXPECT_LT(plot.x.minimum, 100.0);
  EXPECT_GT(plot.x.maximum, 9000.0);
  EXPECT_EQ(plot.y.minimum, 0.1);
  EXPECT_EQ(plot.y.maximum, 100.0);
  EXPECT_EQ(plot.table.series[0].x[0], 100.0) << "a sheet at the surface stands a decade above the next";
  EXPECT_EQ(plot.table.series[1].y[1], 40.0);
  EXPECT_EQ(plot.table.series[2].y[1], 100.0);
  EXPECT_EQ(sheet_text(model, 1), "Sheet 2 of 3: 250.0 m, 40 S");
  EXPECT_EQ(sheet_text(model, 2), "Perfect conductor: 9000.0 m");
  EXPECT_EQ(sheet_text(model, 3), "");
}
