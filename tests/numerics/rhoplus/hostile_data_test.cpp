// Whatever a user can feed the routine: an answer with its proof or a status with a sentence.
#include <cmath>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "numerics/rhoplus/chi_statistics.h"
#include "numerics/rhoplus/inversion.h"
#include "numerics/rhoplus/rhoplus.h"
#include "samples/random_numbers.h"
#include "tests/numerics/rhoplus/made_data.h"

namespace {

using made::table;
using numerics::rhoplus::RhoplusInversion;
using numerics::rhoplus::RhoplusRow;
using numerics::rhoplus::RhoplusRun;
using numerics::rhoplus::RhoplusSurface;

void expect_sound(const std::vector<RhoplusRow>& rows, const RhoplusRun& run) {
  ASSERT_EQ(run.status, numerics::rhoplus::rhoplus_ran) << run.message;
  EXPECT_GE(run.achieved_chi, 0.0F);
  EXPECT_TRUE(std::isfinite(run.achieved_chi));
  EXPECT_GT(run.target_chi, 0.0F);
  for (const RhoplusRow& row : rows) {
    if (row.frequency > 0.0F) {
      EXPECT_GE(row.model_resistivity, 0.0F);
      EXPECT_TRUE(std::isfinite(row.model_resistivity));
      EXPECT_GE(row.model_phase, 0.0F);
      EXPECT_LE(row.model_phase, 90.0F);
    }
  }
  ASSERT_LE(run.model.size(), static_cast<std::size_t>(numerics::rhoplus::max_rhoplus_layers));
  ASSERT_FALSE(run.model.empty());
  for (std::size_t i = 0; i < run.model.size(); ++i) {
    EXPECT_GT(run.model[i].conductance, 0.0F);
    EXPECT_TRUE(i == 0 || run.model[i].depth >= run.model[i - 1].depth);
    EXPECT_TRUE(i + 1 == run.model.size() || run.model[i].conductance < numerics::rhoplus::perfect_conductor);
  }
}

std::vector<made::RhoplusDatum> noisy(int count, double low, double high, double error, std::uint32_t seed) {
  std::vector<made::RhoplusDatum> data =
      made::layered(made::ground(3), made::frequencies(count, low, high), error);
  made::add_noise(data, seed);
  return data;
}

TEST(Rhoplus_table, Extremes_keep_their_proof) {
  Module_samples::RandomNumbers random({11});
  struct Case {
    const char* name;
    std::vector<RhoplusRow> rows;
    double gap;  // relative, of chi-squared
  };
  std::vector<Case> cases;
  cases.push_back({"300 frequencies over 9 decades", table(noisy(300, 1e-5, 1e4, 0.05, 1)), 1e-6});
  cases.push_back({"all phases unused", table(noisy(60, 1e-3, 1e3, 0.05, 2)), 1e-6});
  cases.push_back({"all resistivities unused but one", table(noisy(60, 1e-3, 1e3, 0.05, 3)), 1e-6});
  cases.push_back({"errors from 1e-6 to 1e6", table(noisy(60, 1e-3, 1e3, 0.3, 4)), 1e-6});
  cases.push_back({"errors of 1e-6", table(noisy(60, 1e-3, 1e3, 0.3, 5)), 1e-6});
  cases.push_back({"errors of 1e6", table(noisy(60, 1e-3, 1e3, 0.3, 6)), 1e-6});
  cases.push_back({"no data of one dimension", table(noisy(60, 1e-3, 1e3, 0.05, 7)), 1e-6});
  cases.push_back({"each frequency twice", table(noisy(60, 1e-3, 1e3, 0.05, 8)), 1e-6});
  cases.push_back({"all of one frequency", table(noisy(60, 1e-3, 1e3, 0.05, 9)), 1e-6});
  for (std::size_t i = 0; i < 60; ++i) {
    cases[1].rows[i].use_phase = 0.0F;
    cases[2].rows[i].use_resistivity = i == 20 ? 1.0F : 0.0F;
    cases[3].rows[i].resistivity_error =
        cases[3].rows[i].resistivity * static_cast<float>(std::pow(10.0, -6.0 + 12.0 * random.uniform()));
    cases[3].rows[i].phase_error = static_cast<float>(std::pow(10.0, -6.0 + 12.0 * random.uniform()));
    cases[4].rows[i].resistivity_error = 1e-6F * cases[4].rows[i].resistivity;
    cases[4].rows[i].phase_error = 1e-6F;
    cases[5].rows[i].resistivity_error = 1e6F * cases[5].rows[i].resistivity;
    cases[5].rows[i].phase_error = 1e6F;
    cases[6].rows[i].resistivity = static_cast<float>(std::pow(10.0, -3.0 + 9.0 * random.uniform()));
    cases[6].rows[i].phase = static_cast<float>(-180.0 + 360.0 * random.uniform());
    cases[7].rows[i].frequency = cases[7].rows[i - i % 2].frequency;
    cases[8].rows[i].frequency = 1.0F;
  }
  for (Case& c : cases) {
    for (const RhoplusSurface surface : {RhoplusSurface::insulating, RhoplusSurface::conducting}) {
      SCOPED_TRACE(c.name);
      const RhoplusRun run = numerics::rhoplus::rhoplus(c.rows, surface);
      expect_sound(c.rows, run);
      const double misfit2 = std::pow(run.achieved_chi, 2);
      EXPECT_LE(run.optimality_gap, c.gap * std::max(1.0, misfit2) + 1e-6 * run.used_values);
    }
  }
}

TEST(Rhoplus_table, Random_tables_never_fail) {
  Module_samples::RandomNumbers random({2024});
  const auto power = [&](double decades) {
    return static_cast<float>(std::pow(10.0, decades * (2.0 * random.uniform() - 1.0)));
  };
  for (int trial = 0; trial < 300; ++trial) {
    SCOPED_TRACE(trial);
    std::vector<RhoplusRow> rows(1 + static_cast<std::size_t>(12.0 * random.uniform()));
    const double reach = 12.0 * random.uniform();
    for (RhoplusRow& row : rows) {
      row = {power(reach),
             power(reach),
             0.0F,
             static_cast<float>(45.0 + 100.0 * random.normal()),
             power(4.0),
             random.uniform() < 0.7 ? 1.0F : 0.0F,
             random.uniform() < 0.7 ? 1.0F : 0.0F};
      row.resistivity_error = row.resistivity * power(4.0);
    }
    rows.front().use_phase = 1.0F;
    const RhoplusRun run = numerics::rhoplus::rhoplus(
        rows, trial % 2 == 0 ? RhoplusSurface::insulating : RhoplusSurface::conducting);
    expect_sound(rows, run);
    // Errors that differ by twelve decades leave less of double precision.
    EXPECT_LE(run.optimality_gap, 1e-5 * std::max<double>(run.used_values, std::pow(run.achieved_chi, 2)));
  }
}

/// Exact data with errors of a millionth: every sheet that is added fits them better.
std::vector<made::RhoplusDatum> insatiable(int count) {
  return made::layered(made::ground(3), made::frequencies(count, 1e-5, 1e4), 1e-6);
}

TEST(Rhoplus_table, A_limit_of_iterations_ends_the_search_and_says_so) {
  const numerics::rhoplus::InversionLimits small{.search = 2e7, .sheets = 5e6};
  const std::vector<made::RhoplusDatum> data = insatiable(60);
  const RhoplusInversion inversion =
      numerics::rhoplus::invert(data, false, numerics::rhoplus::max_rhoplus_layers, small);
  ASSERT_TRUE(inversion.ran);
  EXPECT_TRUE(inversion.limit_met);
  EXPECT_LE(inversion.sheets.sheets.size(), std::size_t{numerics::rhoplus::max_rhoplus_layers});
  // A layered ground fits exactly, so all that is left of chi-squared could go.
  EXPECT_GE(inversion.fit.gap, 0.999 * inversion.fit.misfit2);
  for (std::size_t i = 0; i < data.size(); ++i) {
    EXPECT_NEAR(inversion.rows[i].resistivity / data[i].resistivity, 1.0, 0.05) << i;
  }
  const RhoplusInversion usual =
      numerics::rhoplus::invert(noisy(20, 1e-2, 1e2, 0.05, 1), false, numerics::rhoplus::max_rhoplus_layers);
  EXPECT_FALSE(usual.limit_met);
}

TEST(Rhoplus_table, None_takes_ten_seconds) {
  if (!BRENLOX_OPTIMISED) {
    GTEST_SKIP() << "measures optimised code only";
  }
  for (const int count : {60, 1000}) {
    std::vector<RhoplusRow> rows = table(insatiable(count));
    const std::clock_t start = std::clock();
    EXPECT_TRUE(numerics::rhoplus::rhoplus(rows, RhoplusSurface::insulating).limit_met);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 10.0) << count;
  }
}

TEST(Rhoplus_table, What_cannot_be_used_is_left_out_and_named) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  std::vector<RhoplusRow> rows = table(noisy(12, 1e-2, 1e2, 0.05, 1));
  std::vector<RhoplusRow> clean(rows.begin() + 6, rows.end());
  rows[0].frequency = 0.0F;
  rows[1].frequency = nan;
  rows[2].resistivity = -5.0F;
  rows[2].phase = nan;
  rows[3].resistivity_error = 0.0F;
  rows[3].phase_error = 0.0F;
  rows[4].resistivity = infinity;
  rows[4].phase_error = -1.0F;
  rows[5].resistivity_error = nan;
  rows[5].phase = infinity;
  RhoplusInversion details;
  const RhoplusRun run = numerics::rhoplus::rhoplus(rows, RhoplusSurface::insulating, &details);
  ASSERT_EQ(run.status, numerics::rhoplus::rhoplus_ran);
  EXPECT_EQ(run.used_values, 12);
  EXPECT_EQ(run.achieved_chi, numerics::rhoplus::rhoplus(clean, RhoplusSurface::insulating).achieved_chi);
  EXPECT_EQ(rows[0].model_resistivity, no_data);
  EXPECT_EQ(rows[1].model_phase, no_data);
  EXPECT_GT(rows[4].model_resistivity, 0.0F);
  ASSERT_EQ(details.remarks.size(), 10U);
  EXPECT_EQ(details.remarks.front(), "Row 1: the frequency can't be used.");
  EXPECT_EQ(details.remarks[5], "Row 4: the phase or its error can't be used.");
}

TEST(Rhoplus_table, Nothing_to_invert_is_a_status_with_a_sentence) {
  std::vector<RhoplusRow> unused = table(noisy(3, 1.0, 10.0, 0.05, 1));
  for (RhoplusRow& row : unused) {
    row.use_resistivity = row.use_phase = 0.0F;
  }
  std::vector<RhoplusRow> none;
  for (std::vector<RhoplusRow>* rows : {&unused, &none}) {
    const RhoplusRun run = numerics::rhoplus::rhoplus(*rows, RhoplusSurface::insulating);
    EXPECT_EQ(run.status, numerics::rhoplus::rhoplus_no_usable_data);
    EXPECT_FALSE(run.message.empty());
  }
  EXPECT_EQ(unused[1].model_resistivity, no_data);
}

TEST(Rhoplus_table, Frequencies_below_four_decimals_stay_apart) {
  // Both are 0.0005 Hz in a text of four decimals.
  std::vector<RhoplusRow> rows{{0.00051F, 100.0F, 1.0F, 40.0F, 0.5F, 1.0F, 1.0F},
                               {0.00054F, 100.0F, 1.0F, 41.0F, 0.5F, 1.0F, 1.0F}};
  ASSERT_EQ(numerics::rhoplus::rhoplus(rows, RhoplusSurface::insulating).status,
            numerics::rhoplus::rhoplus_ran);
  EXPECT_NE(rows[0].model_phase, rows[1].model_phase);
}

TEST(Rhoplus_chi, Expected_and_95_percent_of_tables) {
  struct Case {
    int n;
    double expected;
    double chi2_95;  // percentage points of the chi-squared distribution
  };
  const Case cases[] = {
      {1, 0.797885, 3.841}, {2, 1.253314, 5.991}, {10, 3.084, 18.307}, {100, 9.975, 124.342}};
  for (const Case& c : cases) {
    EXPECT_NEAR(numerics::rhoplus::expected_chi(c.n), c.expected, 1e-3) << c.n;
    EXPECT_NEAR(std::pow(numerics::rhoplus::chi_of_95_percent(c.n), 2), c.chi2_95, 1e-3) << c.n;
  }
}

}  // namespace
