// finished_run_test.cpp: the response of a finished inversion comes out as the inversion program left it.
#include "tests/numerics/section/finished_run.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include <gtest/gtest.h>

#include "numerics/section/response.h"

namespace {

TEST(Finished_run, Its_responses_come_out_again) {
  const std::string folder = BRENLOX_FIELD_DATA "/occam2d";
  if (!std::filesystem::exists(folder)) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  const FinishedRun run = read_finished_run(folder);
  ASSERT_EQ(run.rows.size(), 1140U);
  const auto response = numerics::section::compute_response(run.section, run.sites, run.frequencies);
  ASSERT_TRUE(response.has_value());

  double largest_resistivity = 0.0;
  double largest_phase = 0.0;
  for (const FinishedRun::Row& row : run.rows) {
    const numerics::section::ModeResponse& mode = row.type <= 2 ? response->te : response->tm;
    const std::size_t at = (row.site_number - 1) * run.frequencies.size() + row.frequency_number - 1;
    if (row.type == 1 || row.type == 5) {
      largest_resistivity =
          std::max(largest_resistivity, std::abs(mode.log10_resistivity[at] - row.modelled));
    } else {
      largest_phase = std::max(largest_phase, std::abs(mode.phase[at] - row.modelled));
    }
  }
  RecordProperty("largest_difference_log10_resistivity", std::to_string(largest_resistivity));
  RecordProperty("largest_difference_phase", std::to_string(largest_phase));
  EXPECT_LT(largest_resistivity, 2e-5);
  EXPECT_LT(largest_phase, 0.003);
}

}  // namespace
