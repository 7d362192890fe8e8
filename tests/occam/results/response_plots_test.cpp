#include "occam/results/response_plots.h"

#include <cmath>

#include <gtest/gtest.h>

#include "core/absent_value.h"

namespace Module_occam {
namespace {

using FileRow = OccamResponse::FileRow;

// Three sites, seven frequencies from 1 to 64 Hz in the order of the file: ascending.
OccamResponse made_response(std::vector<FileRow> rows) {
  OccamResponse response;
  response.resp_site_names = {"a", "b", "c"};
  response.resp_offsets = {0.0, 50.0, 150.0};
  response.resp_frequencies = {1.0, 2.0, 4.0, 8.0, 16.0, 32.0, 64.0};
  response.set_rows(std::move(rows));
  return response;
}

OccamResponse one_mode() {
  return made_response({{2, 3, DataType::tm_resistivity, {2.0F, 0.5F, 1.5F, 2.0F}},
                        {2, 4, DataType::tm_resistivity, {2.2F, 0.0F, 2.2F, 0.0F}}});
}

ResponsePlot curves(const OccamResponse& response, std::size_t view, Pane pane) {
  return station_curves(response, response_views(response).at(view), pane, 2);
}

TEST(Station_curves, Keep_gaps_and_show_the_errors_behind_the_misfits) {
  const ResponsePlot plot = curves(one_mode(), 0, Pane::upper);
  ASSERT_EQ(plot.table.series.size(), 2U);
  EXPECT_EQ(plot.legend, (std::vector<std::string>{"observed", "modelled"}));
  const graph::PlotSeries& observed_values = plot.table.series[0];
  EXPECT_EQ(observed_values.x[2], 4.0);
  EXPECT_EQ(observed_values.y[2], 2.0);
  EXPECT_EQ(observed_values.error[2], 0.25);
  EXPECT_TRUE(is_absent(observed_values.error[3]));  // a misfit of 0 says nothing about the error
  EXPECT_TRUE(is_absent(observed_values.y[0]));
  EXPECT_EQ(plot.table.series[1].y[2], 1.5);
  EXPECT_LT(plot.y.minimum, 1.5);
  EXPECT_GT(plot.y.maximum, 2.25);  // the bar of 2.0 is whole
  EXPECT_LT(plot.y.maximum, 2.4);
}

TEST(Station_curves, Tell_both_modes_apart) {
  const OccamResponse response = made_response({{2, 3, DataType::tm_resistivity, {2.0F, 0.5F, 1.5F, 2.0F}},
                                                {2, 4, DataType::te_resistivity, {1.1F, 0.1F, 1.0F, 1.0F}},
                                                {1, 4, DataType::te_resistivity, {9.0F, 0.1F, 8.9F, 1.0F}},
                                                {2, 4, DataType::te_phase, {45.0F, 1.0F, 44.0F, 1.0F}}});
  ASSERT_EQ(response_views(response).size(), 1U);
  const ResponsePlot plot = curves(response, 0, Pane::upper);
  EXPECT_EQ(plot.series_names,
            (std::vector<std::string>{"TE resistivity observed", "TE resistivity modelled",
                                      "TM resistivity observed", "TM resistivity modelled"}));
  EXPECT_EQ(plot.legend, (std::vector<std::string>{"TE", "", "TM", ""}));
  EXPECT_EQ(plot.table.series[0].y[3], 1.1F);
  EXPECT_TRUE(is_absent(plot.table.series[0].y[2]));
  EXPECT_EQ(plot.table.series[3].y[2], 1.5);
  EXPECT_EQ(plot.styles[0].colour, plot.styles[1].colour);
  EXPECT_NE(plot.styles[0].colour, plot.styles[2].colour);
  EXPECT_NE(plot.styles[0].marker, plot.styles[2].marker);
  const ResponsePlot phase = curves(response, 0, Pane::lower);
  ASSERT_EQ(phase.table.series.size(), 2U);
  EXPECT_EQ(phase.table.series[0].y[3], 45.0);
  EXPECT_EQ(phase.styles[0].colour, plot.styles[0].colour);  // of TE, though TM has no phase
}

TEST(Response_views, Are_those_that_there_are_data_of) {
  const auto names = [](const OccamResponse& response) {
    std::string text;
    for (const ResponseView& view : response_views(response)) {
      text += std::string(text.empty() ? "" : "; ") + view.name + ":";
      for (const ResponseChannel& channel : view.channels) {
        text += " [" + channel.name + "]";
      }
    }
    return text;
  };
  const auto of_types = [](const std::vector<int>& types) {
    std::vector<FileRow> rows;
    rows.reserve(types.size());
    for (const int type : types) {
      rows.push_back({1, 1, DataType{type}, {1.0F, 0.0F, 1.0F, 0.0F}});
    }
    return made_response(rows);
  };
  EXPECT_EQ(names(of_types({5, 6})), "Resistivity and phase: [TM]");
  EXPECT_EQ(names(of_types({2})), "Resistivity and phase: [TE]");
  EXPECT_EQ(names(of_types({9, 2, 10, 6})), "Resistivity and phase: [TE] [TM]");
  EXPECT_EQ(names(of_types({1, 2, 3, 4, 5, 6, 9, 13, 14, 15, 16})),
            "Resistivity and phase: [TE] [TE linear] [TM]; Tipper: [TE]; Impedance: [TE] [TM]");
  EXPECT_EQ(names(of_types({4})), "Tipper: [TE]");
  EXPECT_EQ(names(of_types({7, 11})), "Resistivity and phase: [TM]");
  // A phase belongs to both channels of its mode and is drawn once.
  const ResponseView view = response_views(of_types({1, 2, 9})).front();
  EXPECT_EQ(view.curves(Pane::upper).size(), 2U);
  EXPECT_EQ(view.curves(Pane::lower).size(), 1U);
}

TEST(Drawn_data, Are_logarithms_and_impedances_without_their_trend) {
  const OccamResponse response =
      made_response({{1, 3, DataType::te_linear_resistivity, {100.0F, 90.0F, 10.0F, 9.0F}},
                     {1, 4, DataType::te_linear_resistivity, {-5.0F, -15.0F, 10.0F, -1.5F}},
                     {1, 5, DataType::tm_real_impedance, {-0.008F, -0.004F, -0.004F, -2.0F}}});
  const auto drawn = [&](DataType type, int frequency) { return drawn_datum(response, type, 1, frequency); };
  const DrawnDatum linear = drawn(DataType::te_linear_resistivity, 3);
  EXPECT_EQ(linear.values, (OccamResponse::Row{2.0F, 1.0F, 1.0F, 9.0F}));
  EXPECT_NEAR(linear.error, 0.1 / std::log(10.0), 1e-9);  // 10 of 100 ohm-m
  const DrawnDatum negative = drawn(DataType::te_linear_resistivity, 4);
  EXPECT_EQ(negative.values, (OccamResponse::Row{no_data, no_data, 1.0F, -1.5F}));
  EXPECT_TRUE(is_absent(negative.error));
  const DrawnDatum impedance = drawn(DataType::tm_real_impedance, 5);  // at 16 Hz
  EXPECT_FLOAT_EQ(impedance.values[0], -0.002F);
  EXPECT_FLOAT_EQ(impedance.values[2], -0.001F);
  EXPECT_NEAR(impedance.error, 0.0005, 1e-9);
  EXPECT_TRUE(is_absent(static_cast<double>(drawn(DataType::te_phase, 1).values[0])));
}

TEST(Profiles, Show_the_chosen_frequencies) {
  const OccamResponse response = one_mode();
  const auto numbers = [&](int mode, int odds_evens) {
    return profile_frequencies(response, {mode, odds_evens});
  };
  using Numbers = std::vector<int>;
  EXPECT_EQ(numbers(0, 0), (Numbers{1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(numbers(0, 1), (Numbers{1, 3, 5, 7}));
  EXPECT_EQ(numbers(0, 2), (Numbers{2, 4, 6}));
  EXPECT_EQ(numbers(1, 0), (Numbers{6, 7}));  // 7 / 3 of them, the highest
  EXPECT_EQ(numbers(2, 0), (Numbers{4, 5}));
  EXPECT_EQ(numbers(3, 0), (Numbers{1, 2, 3}));
  EXPECT_EQ(numbers(4, 0), (Numbers{1}));
  EXPECT_EQ(numbers(10, 0), (Numbers{7}));
  EXPECT_EQ(numbers(10, 2), (Numbers{}));
  EXPECT_EQ(numbers(11, 0), (Numbers{}));
  const ResponsePlot plot = response_profiles(response, DataType::tm_resistivity, {6, 0});
  ASSERT_EQ(plot.table.series.size(), 2U);
  EXPECT_EQ(plot.table.series[0].x, (std::vector<double>{0.0, 50.0, 150.0}));
  EXPECT_EQ(plot.table.series[1].y[1], 1.5);
  EXPECT_EQ(plot.series_names[1], "TM resistivity 4 Hz modelled");
  EXPECT_TRUE(response_profiles(response, DataType::tm_phase, {11, 0}).table.series.empty());
}

TEST(Misfits, Are_root_mean_squares_for_sites_and_types) {
  const MisfitTable table =
      misfit_table(made_response({{1, 1, DataType::tm_resistivity, {0.0F, 0.0F, 0.0F, 3.0F}},
                                  {1, 2, DataType::tm_resistivity, {0.0F, 0.0F, 0.0F, -4.0F}},
                                  {1, 1, DataType::tm_phase, {0.0F, 0.0F, 0.0F, 1.0F}},
                                  {3, 1, DataType::te_phase, {0.0F, 0.0F, 0.0F, 2.0F}}}));
  EXPECT_EQ(table.data_types,
            (std::vector{DataType::te_phase, DataType::tm_resistivity, DataType::tm_phase}));
  EXPECT_NEAR(table.site_cells[0].at(DataType::tm_resistivity).rms(), std::sqrt(12.5), 1e-12);
  EXPECT_NEAR(table.of_site(1).rms(), std::sqrt(26.0 / 3.0), 1e-12);
  EXPECT_EQ(table.of_site(2).count, 0);
  EXPECT_NEAR(table.of_type(DataType::te_phase).rms(), 2.0, 1e-12);
  EXPECT_NEAR(table.of_all().rms(), std::sqrt(30.0 / 4.0), 1e-12);
}

TEST(Convergence, Names_the_curve_under_the_pointer) {
  RunResults results;
  results.last_iteration = 4;
  results.iteration_misfit = {5.0F, 2.0F, no_data, 1.0F, 1.0F};
  results.iteration_multiplier = {1000.0F, 100.0F, no_data, 10.0F, 1.0F};
  const ResponsePlot plot = convergence_plot(results);
  ASSERT_EQ(plot.table.series.size(), 2U);  // no roughness at all
  EXPECT_EQ(plot.y.type, graph::AxisType::logarithmic);
  EXPECT_EQ(plot.x.maximum, 5.0) << "marks at whole iterations";
  EXPECT_EQ(convergence_text(plot, 0.9, 3.0), "RMS error 2.0000 at iteration 1");
  EXPECT_EQ(convergence_text(plot, 1.2, 30.0), "Lagrange Multiplier 100.0000 at iteration 1");
  EXPECT_EQ(convergence_text(plot, 2.2, 1.1), "RMS error 1.0000 at iteration 3");
  EXPECT_EQ(convergence_text(convergence_plot(RunResults()), 0.0, 1.0), "NA");
  results.iteration_multiplier[1] = -2.0F;  // some programs keep its logarithm
  EXPECT_EQ(convergence_plot(results).y.type, graph::AxisType::linear);
}

}  // namespace
}  // namespace Module_occam
