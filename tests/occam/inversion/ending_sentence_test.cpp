#include "occam/inversion/ending_sentence.h"

#include <cmath>
#include <optional>

#include <gtest/gtest.h>

#include "occam/results/site_misfits.h"

using namespace Module_occam;
using numerics::occam_inversion::Ending;

TEST(Site_misfits, Are_the_root_mean_square_of_each_site_s_rows) {
  const std::vector<int> sites{1, 1, 3, 0, 3, 9};
  const std::vector<double> misfits{3.0, 4.0, -2.0, 100.0, 2.0, 100.0};
  const auto rms = rms_by_site(sites, misfits, 3);
  ASSERT_EQ(rms.size(), 3U);
  EXPECT_DOUBLE_EQ(*rms[0], std::sqrt(12.5));
  EXPECT_FALSE(rms[1]);
  EXPECT_DOUBLE_EQ(*rms[2], 2.0);
}

TEST(Site_misfits, Sites_that_stand_out_are_few_or_none) {
  using Rms = std::vector<std::optional<double>>;
  EXPECT_EQ(poorly_fitted_sites(Rms{1.0, 1.1, 4.0, {}, 0.9, 2.0, 1.0}), (std::vector<int>{3, 6}));
  EXPECT_EQ(poorly_fitted_sites(Rms{1.0, 1.1, 1.2, 0.9, 1.3}), std::vector<int>{});
  EXPECT_EQ(poorly_fitted_sites(Rms{1.0, 9.0}), std::vector<int>{});
  EXPECT_EQ(poorly_fitted_sites(Rms{}), std::vector<int>{});
}

TEST(Ending_sentence, Says_what_to_do_next) {
  const auto sentence = [](Ending ending, int iteration, double rms, double target,
                           std::vector<std::string> sites = {}) {
    return ending_sentence({ending, iteration, rms, rms, false, target, false, false, std::move(sites)});
  };
  EXPECT_EQ(sentence(Ending::smooth_and_fitting, 6, 0.9999, 1.0),
            "RMS 1.00 after 6 iterations; the model is the smoothest one found that fits to the target.");
  EXPECT_EQ(
      sentence(Ending::no_better_fit, 8, 1.952, 1.2, {"3 (pb27)", "17"}),
      "Stopped improving at RMS 1.95 after 8 iterations: the target of 1.2 asks for larger errors, look at "
      "the misfit of sites 3 (pb27) and 17.");
  EXPECT_EQ(sentence(Ending::iterations_done, 1, 2.5, 1.0, {"3"}),
            "RMS 2.50 after 1 iteration; the target of 1 is not reached yet, look at the misfit of site 3.");
  EXPECT_EQ(
      sentence(Ending::iterations_done, 10, 1.001, 1.0),
      "RMS 1.00 after 10 iterations; the target of 1 is reached, and more iterations may smooth the model.");
  EXPECT_EQ(sentence(Ending::stopped, 2, 3.0, 1.0),
            "Stopped at RMS 3.00 after 2 iterations; it can be continued.");

  // The target is one of the misfit that the inversion goes by.
  EXPECT_EQ(
      ending_sentence({Ending::iterations_done, 4, 1.66, 1.0, true, 1.0, false, false, {}}),
      "RMS 1.66 (1.00 with outliers counted linearly) after 4 iterations; the target of 1 is reached, and "
      "more iterations may smooth the model.");
  EXPECT_EQ(
      ending_sentence({Ending::no_better_fit, 3, 2.0, 2.0, false, 1.0, true, false, {}}),
      "Stopped improving at RMS 2.00 after 3 iterations: within the model limits of the file the target of "
      "1 asks for larger errors.");
  EXPECT_EQ(
      ending_sentence({Ending::no_better_fit, 3, 2.0, 2.0, false, 1.0, true, true, {}}),
      "Stopped improving at RMS 2.00 after 3 iterations: within the model limits and value steps of the "
      "file the target of 1 asks for larger errors.");
}

TEST(Ending_sentence, Names_sites_as_the_data_file_does) {
  ObservedData data;
  data.site_names = {"station_100.0", "pb27", "300", "station_400.0", "pb30"};
  data.site_offsets = {100.0, 200.0, 300.0, 400.0, 500.0};
  std::vector<double> modelled;
  const std::vector<double> misfits{9.0, -8.0, 1.0, 1.1, 0.9};
  for (int site = 1; site <= 5; ++site) {
    data.rows.push_back({site, 1, DataType::tm_phase, 40.0, 2.0});
    modelled.push_back(40.0 - 2.0 * misfits[static_cast<std::size_t>(site - 1)]);
  }
  EXPECT_EQ(poor_sites(data, modelled), (std::vector<std::string>{"1", "2 (pb27)"}));
}
