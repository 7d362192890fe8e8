#include "occam/results/response_plots.h"

#include <cmath>

#include <gtest/gtest.h>

#include "core/absent_value.h"

namespace Module_occam {
namespace {

// Three sites, seven frequencies from 1 to 64 Hz in the order of the file: ascending.
OccamResponse made_response() {
  OccamResponse response;
  response.resp_site_names = {"a", "b", "c"};
  response.resp_offsets = {0.0, 50.0, 150.0};
  response.resp_frequencies = {1.0, 2.0, 4.0, 8.0, 16.0, 32.0, 64.0};
  response.assign_no_data();
  response.row(ResponseKind::resistivity, 2, 3) = {2.0F, 0.5F, 1.5F, 2.0F};
  response.row(ResponseKind::resistivity, 2, 4) = {2.2F, 0.0F, 2.2F, 0.0F};
  return response;
}

TEST(Station_curves, Keep_gaps_and_show_the_errors_behind_the_misfits) {
  const ResponsePlot plot = station_curves(made_response(), ResponseKind::resistivity, 2);
  ASSERT_EQ(plot.table.series.size(), 2U);
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

TEST(Mode_curves, Keep_both_modes_of_a_site_apart_in_the_order_of_the_frequencies) {
  OccamResponse response = made_response();
  response.rows = {{2, 3, 5, {2.0F, 0.5F, 1.5F, 2.0F}},
                   {2, 5, 1, {1.0F, 0.1F, 0.9F, 1.0F}},
                   {2, 4, 1, {1.1F, 0.1F, 1.0F, 1.0F}},
                   {1, 4, 1, {9.0F, 0.1F, 8.9F, 1.0F}},
                   {2, 4, 2, {45.0F, 1.0F, 44.0F, 1.0F}}};
  const ResponsePlot plot = mode_curves(response, ResponseKind::resistivity, 2);
  EXPECT_EQ(plot.series_names,
            (std::vector<std::string>{"TE observed", "TE modelled", "TM observed", "TM modelled"}));
  EXPECT_EQ(plot.table.series[0].x, (std::vector<double>{8.0, 16.0}));
  EXPECT_EQ(plot.table.series[3].y, (std::vector<double>{1.5}));
  const ResponsePlot phase = mode_curves(response, ResponseKind::phase, 2);
  ASSERT_EQ(phase.table.series.size(), 2U);
  EXPECT_EQ(phase.table.series[0].y, (std::vector<double>{45.0}));
}

TEST(Profiles, Show_the_chosen_frequencies) {
  const OccamResponse response = made_response();
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
  const ResponsePlot plot = response_profiles(response, ResponseKind::resistivity, {6, 0});
  ASSERT_EQ(plot.table.series.size(), 2U);
  EXPECT_EQ(plot.table.series[0].x, (std::vector<double>{0.0, 50.0, 150.0}));
  EXPECT_EQ(plot.table.series[1].y[1], 1.5);
  EXPECT_EQ(plot.series_names[1], "4 Hz modelled");
  EXPECT_TRUE(response_profiles(response, ResponseKind::phase, {11, 0}).table.series.empty());
}

TEST(Misfits, Are_root_mean_squares_for_sites_and_types) {
  OccamResponse response = made_response();
  response.rows = {{1, 1, 5, {0.0F, 0.0F, 0.0F, 3.0F}},
                   {1, 2, 5, {0.0F, 0.0F, 0.0F, -4.0F}},
                   {1, 1, 6, {0.0F, 0.0F, 0.0F, 1.0F}},
                   {3, 1, 2, {0.0F, 0.0F, 0.0F, 2.0F}}};
  const MisfitTable table = misfit_table(response);
  EXPECT_EQ(table.data_types, (std::vector<int>{2, 5, 6}));
  EXPECT_NEAR(table.site_cells[0].at(5).rms(), std::sqrt(12.5), 1e-12);
  EXPECT_NEAR(table.of_site(1).rms(), std::sqrt(26.0 / 3.0), 1e-12);
  EXPECT_EQ(table.of_site(2).count, 0);
  EXPECT_NEAR(table.of_type(2).rms(), 2.0, 1e-12);
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
  EXPECT_EQ(convergence_text(plot, 0.9, 3.0), "RMS error 2.0000 at iteration 1");
  EXPECT_EQ(convergence_text(plot, 1.2, 30.0), "Lagrange Multiplier 100.0000 at iteration 1");
  EXPECT_EQ(convergence_text(plot, 2.2, 1.1), "RMS error 1.0000 at iteration 3");
  EXPECT_EQ(convergence_text(convergence_plot(RunResults()), 0.0, 1.0), "NA");
  results.iteration_multiplier[1] = -2.0F;  // some programs keep its logarithm
  EXPECT_EQ(convergence_plot(results).y.type, graph::AxisType::linear);
}

}  // namespace
}  // namespace Module_occam
