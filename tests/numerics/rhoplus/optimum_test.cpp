// The least misfit of all one-dimensional models: against analytic layered ground, sheets, closed forms and
// symmetries, with the proof of optimality computed again here.
#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "numerics/rhoplus/inversion.h"
#include "numerics/rhoplus/log_ratio.h"
#include "tests/numerics/rhoplus/made_data.h"

namespace {

using made::RhoplusDatum;
using numerics::rhoplus::RhoplusInversion;

constexpr bool insulating = false;
constexpr bool conducting = true;
constexpr std::size_t max_rows = 64;

/// The bound of convex analysis, chi2 - least chi2 <= 2 Int [max(g,0) eta + max(-g,0)(1 - eta)] dlambda, by
/// quadrature from the predicted rows, on another scan.
double gap_by_quadrature(const std::vector<RhoplusDatum>& data, const RhoplusInversion& inversion,
                         double reference, double wall) {
  struct Term {
    std::complex<double> s;
    double resistivity;
    double phase;
  };
  std::vector<Term> terms;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const numerics::rhoplus::RhoplusPrediction& row = inversion.rows[i];
    const double phase_error = data[i].phase_error * std::numbers::pi / 180.0;
    terms.push_back({{0.0, 2.0 * std::numbers::pi * data[i].frequency / reference},
                     data[i].use_resistivity
                         ? row.resistivity_residual * data[i].resistivity / data[i].resistivity_error
                         : 0.0,
                     data[i].use_phase ? row.phase_residual / phase_error : 0.0});
  }
  constexpr double step = 0.002;
  double gap = 0.0;
  std::size_t passed = 0;
  const std::vector<double>& switches = inversion.fit.model.switches;
  const int points = static_cast<int>((std::min(45.0, wall) + 45.0) / step);
  for (int point = 0; point < points; ++point) {
    const double x = -45.0 + point * step;
    const double lambda = std::exp(x);
    double g = 0.0;
    for (const Term& term : terms) {
      const std::complex<double> kernel = 1.0 / (lambda + term.s) - 1.0 / (lambda + 1.0);
      g += 2.0 * term.resistivity * kernel.real() + term.phase * kernel.imag();
    }
    while (passed < switches.size() && switches[passed] < x) {
      ++passed;
    }
    const bool state = inversion.fit.model.state_after(passed);
    gap += 2.0 * step * lambda * (state ? std::max(g, 0.0) : std::max(-g, 0.0));
  }
  return gap;
}

RhoplusInversion invert_proven(const std::vector<RhoplusDatum>& data, bool surface, bool all_used = true) {
  RhoplusInversion inversion = numerics::rhoplus::invert(data, surface, max_rows);
  EXPECT_TRUE(inversion.ran);
  const double scale = std::max(1.0, inversion.fit.misfit2);
  EXPECT_TRUE(inversion.fit.fits_exactly || inversion.fit.gap <= 1e-8 * scale)
      << "gap " << inversion.fit.gap << " of " << inversion.fit.misfit2;
  EXPECT_LT(inversion.sheet_error, 1e-10);
  if (all_used && !inversion.fit.fits_exactly) {
    double low = HUGE_VAL;
    double high = 0.0;
    for (const RhoplusDatum& d : data) {
      low = std::min(low, d.frequency);
      high = std::max(high, d.frequency);
    }
    const double reference = 2.0 * std::numbers::pi * std::sqrt(low * high);
    const double wall = surface == conducting ? std::log(1000.0 * high / std::sqrt(low * high)) : HUGE_VAL;
    EXPECT_LT(gap_by_quadrature(data, inversion, reference, wall), 1e-4 * scale);
  }
  return inversion;
}

TEST(Rhoplus_optimum, Of_layered_ground_with_noise) {
  struct Case {
    int layers;
    double error;
    bool surface;
    bool resistivity;
    bool phase;
  };
  const Case cases[] = {
      {1, 0.05, insulating, true, true},  {2, 0.05, insulating, true, true},
      {3, 0.03, insulating, true, true},  {5, 0.03, insulating, true, true},
      {5, 0.01, insulating, true, true},  {3, 0.03, conducting, true, true},
      {5, 0.03, conducting, true, true},  {5, 0.05, insulating, true, false},
      {5, 0.05, insulating, false, true}, {5, 0.001, insulating, true, true},
      {3, 0.001, conducting, true, true},
  };
  std::uint32_t seed = 1;
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.layers) + " layers, error " + std::to_string(c.error) + ", case " +
                 std::to_string(seed));
    const std::vector<RhoplusDatum> exact =
        made::layered(made::ground(c.layers), made::frequencies(40, 1e-3, 1e3), c.error);
    std::vector<RhoplusDatum> data = exact;
    made::add_noise(data, seed++);
    for (RhoplusDatum& d : data) {
      d.use_resistivity = c.resistivity;
      d.use_phase = c.phase;
    }
    const RhoplusInversion inversion = invert_proven(data, c.surface);
    // The ground that made the data is one of the models over which the least misfit is sought.
    const double of_truth = made::misfit2(data, exact);
    EXPECT_LE(inversion.fit.misfit2, of_truth);
    EXPECT_GE(inversion.fit.misfit2, 0.4 * of_truth);  // but noise can't be fitted by one dimension
    EXPECT_LE(inversion.sheets.sheets.size() + 1, max_rows);
    // The predicted rows are the fit: their misfit, taken by hand, is chi-squared.
    std::vector<RhoplusDatum> predicted = data;
    for (std::size_t i = 0; i < data.size(); ++i) {
      predicted[i].resistivity = inversion.rows[i].resistivity;
      predicted[i].phase = inversion.rows[i].phase;
    }
    EXPECT_NEAR(made::misfit2(data, predicted), inversion.fit.misfit2, 1e-6 * inversion.fit.misfit2);
    // And they are the response of the sheets.
    const std::vector<RhoplusDatum> of_sheets = made::sheets(
        inversion.sheets.sheets, inversion.sheets.conductor_depth, made::frequencies(40, 1e-3, 1e3), 0.1);
    for (std::size_t i = 0; i < data.size(); ++i) {
      ASSERT_NEAR(of_sheets[i].resistivity / inversion.rows[i].resistivity, 1.0, 1e-9) << i;
      ASSERT_NEAR(of_sheets[i].phase, inversion.rows[i].phase, 1e-7) << i;
    }
  }
}

// As the excess z over 1: ln(1 + z) by its own series where it is small.
TEST(Rhoplus_log_ratios, Of_cells_of_any_width_are_logarithms_to_rounding) {
  const std::vector<double> omega{1e-6, 0.03, 1.0, 7.0, 1e5};
  numerics::rhoplus::LogRatios ratios(omega);
  for (const double a : {1e-4, 0.5, 20.0}) {
    for (const double width : {1e-12, 1e-7, 0.01, 0.49, 0.51, 3.0}) {
      const double b = a * std::exp(width);
      ratios.between(a, b);
      for (std::size_t k = 0; k < omega.size(); ++k) {
        SCOPED_TRACE("a " + std::to_string(a) + ", width " + std::to_string(width) + ", omega " +
                     std::to_string(omega[k]));
        const std::complex<double> s{0.0, omega[k]};
        const std::complex<double> z = (a - b) * (s - 1.0) / ((a + s) * (b + 1.0));
        const std::complex<double> expected =
            std::abs(z) < 1e-5 ? z - 0.5 * z * z + z * z * z / 3.0 : std::log(1.0 + z);
        const auto lane = static_cast<Eigen::Index>(k);
        const std::complex<double> found{ratios.real[lane], ratios.imaginary[lane]};
        EXPECT_NEAR(std::abs(found - expected) / std::abs(expected), 0.0, std::abs(z) < 1e-5 ? 1e-14 : 1e-10);
      }
    }
  }
}

TEST(Rhoplus_optimum, Exact_data_are_fitted_to_nothing) {
  struct Case {
    const char* name;
    std::vector<RhoplusDatum> data;
  };
  const double endless = HUGE_VAL;
  const std::vector<double> band = made::frequencies(30, 1e-3, 1e3);
  const std::vector<numerics::rhoplus::Sheet> three{{0.0, 2.0}, {800.0, 30.0}, {20000.0, 4000.0}};
  const std::vector<numerics::rhoplus::Sheet> buried{{150.0, 5.0}, {4000.0, 300.0}};
  const Case cases[] = {
      {"three sheets on an insulator", made::sheets(three, endless, band, 0.02)},
      {"three sheets on a conductor", made::sheets(three, 90000.0, band, 0.02)},
      {"buried sheets", made::sheets(buried, endless, band, 0.02)},
      {"a conductor alone", made::sheets({}, 1000.0, band, 0.02)},
      {"half-space", made::layered(made::ground(1), band, 0.02)},
      {"five layers", made::layered(made::ground(5), made::frequencies(60, 1e-3, 1e3), 0.02)},
      {"nine decades", made::layered(made::ground(5), made::frequencies(300, 1e-5, 1e4), 0.02)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const RhoplusInversion inversion = invert_proven(c.data, insulating);
    EXPECT_LE(inversion.fit.misfit2, 1e-6 * inversion.used_values());
    EXPECT_LE(inversion.sheets.sheets.size() + 1, max_rows);
    EXPECT_EQ(inversion.dropped_sheets, 0);
  }
  // A few sheets are found again.
  for (const double conductor_depth : {endless, 90000.0}) {
    const RhoplusInversion inversion =
        numerics::rhoplus::invert(made::sheets(three, conductor_depth, band, 0.02), insulating, max_rows);
    ASSERT_EQ(inversion.sheets.sheets.size(), three.size());
    for (std::size_t i = 0; i < three.size(); ++i) {
      EXPECT_NEAR(inversion.sheets.sheets[i].depth, three[i].depth, 1e-6 * three[i].depth);
      EXPECT_NEAR(inversion.sheets.sheets[i].conductance, three[i].conductance, 1e-6 * three[i].conductance);
    }
    EXPECT_TRUE(inversion.sheets.conductor_depth == conductor_depth ||
                std::abs(inversion.sheets.conductor_depth - conductor_depth) < 1e-6 * conductor_depth);
  }
}

TEST(Rhoplus_optimum, Closed_forms) {
  const auto only = [](RhoplusDatum d, bool resistivity, bool phase) {
    d.use_resistivity = resistivity;
    d.use_phase = phase;
    return d;
  };
  // |d ln rho / d ln f| can't exceed 1: what is beyond is shared out by the variances.
  const double beyond = std::log(400.0) - std::log(10.0);
  struct Case {
    const char* name;
    std::vector<RhoplusDatum> data;
    double misfit2;
  };
  const Case cases[] = {
      {"one resistivity", {only({1.0, 50.0, 5.0, 0.0, 0.0, true, false}, true, false)}, 0.0},
      {"one phase", {only({1.0, 50.0, 5.0, 30.0, 2.0, false, true}, false, true)}, 0.0},
      {"one frequency", {{1.0, 50.0, 5.0, 30.0, 2.0, true, true}}, 0.0},
      {"phase above 90", {{1.0, 50.0, 5.0, 97.0, 2.0, true, true}}, 12.25},
      {"phase below 0", {{1.0, 50.0, 5.0, -21.0, 3.0, true, true}}, 49.0},
      {"two equal frequencies",
       {{1.0, 50.0, 5.0, 30.0, 2.0, true, true}, {1.0, 50.0, 5.0, 38.0, 2.0, true, true}},
       8.0},
      {"resistivity rising too steeply",
       {only({1.0, 1.0, 0.05, 0.0, 1.0, true, false}, true, false),
        only({10.0, 400.0, 40.0, 0.0, 1.0, true, false}, true, false)},
       beyond * beyond / (0.05 * 0.05 + 0.1 * 0.1)},
      {"resistivity falling too steeply",
       {only({1.0, 400.0, 20.0, 0.0, 1.0, true, false}, true, false),
        only({10.0, 1.0, 0.1, 0.0, 1.0, true, false}, true, false)},
       beyond * beyond / (0.05 * 0.05 + 0.1 * 0.1)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const RhoplusInversion inversion = invert_proven(c.data, insulating);
    EXPECT_NEAR(inversion.fit.misfit2, c.misfit2, 1e-5 * std::max(1.0, c.misfit2));
  }
  const RhoplusInversion above = numerics::rhoplus::invert(cases[3].data, insulating, max_rows);
  EXPECT_TRUE(above.sheets.sheets.empty());
  // rho = mu0 omega c^2 with c the depth of the conductor
  const double depth = std::sqrt(50.0 / (4e-7 * std::numbers::pi * 2.0 * std::numbers::pi));
  EXPECT_NEAR(above.sheets.conductor_depth, depth, 1e-6 * depth);
  const RhoplusInversion below = numerics::rhoplus::invert(cases[4].data, insulating, max_rows);
  ASSERT_EQ(below.sheets.sheets.size(), 1U);
  EXPECT_TRUE(std::isinf(below.sheets.conductor_depth));
  // Z = 1/tau
  const double conductance = 1.0 / std::sqrt(50.0 * 4e-7 * std::numbers::pi * 2.0 * std::numbers::pi);
  EXPECT_NEAR(below.sheets.sheets[0].conductance, conductance, 1e-3 * conductance);
}

class Symmetry : public testing::Test {
 protected:
  Symmetry() {
    data_ = made::layered(made::ground(5), made::frequencies(25, 1e-2, 1e2), 0.05);
    made::add_noise(data_, 77);
    data_[3].use_phase = false;
    data_[9].use_resistivity = false;
    data_[14].use_resistivity = data_[14].use_phase = false;
    base_ = invert_proven(data_, insulating);
  }

  void expect_same_misfit(const RhoplusInversion& other, double factor = 1.0) const {
    EXPECT_NEAR(other.fit.misfit2, factor * base_.fit.misfit2, 1e-9 * factor * base_.fit.misfit2);
  }
  void expect_scaled_model(const RhoplusInversion& other, double depth, double conductance) const {
    ASSERT_EQ(other.sheets.sheets.size(), base_.sheets.sheets.size());
    for (std::size_t i = 0; i < base_.sheets.sheets.size(); ++i) {
      const numerics::rhoplus::Sheet& sheet = base_.sheets.sheets[i];
      EXPECT_NEAR(other.sheets.sheets[i].depth, depth * sheet.depth, 1e-4 * depth * sheet.depth) << i;
      EXPECT_NEAR(other.sheets.sheets[i].conductance / (conductance * sheet.conductance), 1.0, 1e-3) << i;
    }
  }

  std::vector<RhoplusDatum> data_;
  RhoplusInversion base_;
};

TEST_F(Symmetry, Scaling_of_resistivity_frequency_and_errors) {
  constexpr double k = 7.0;
  std::vector<RhoplusDatum> more_resistive = data_;
  std::vector<RhoplusDatum> faster = data_;
  std::vector<RhoplusDatum> vaguer = data_;
  for (std::size_t i = 0; i < data_.size(); ++i) {
    more_resistive[i].resistivity *= k;
    more_resistive[i].resistivity_error *= k;
    faster[i].frequency *= k;
    vaguer[i].resistivity_error *= k;
    vaguer[i].phase_error *= k;
  }
  const RhoplusInversion of_resistive = invert_proven(more_resistive, insulating);
  expect_same_misfit(of_resistive);
  expect_scaled_model(of_resistive, std::sqrt(k), 1.0 / std::sqrt(k));
  const RhoplusInversion of_faster = invert_proven(faster, insulating);
  expect_same_misfit(of_faster);
  expect_scaled_model(of_faster, 1.0 / std::sqrt(k), 1.0 / std::sqrt(k));
  const RhoplusInversion of_vaguer = numerics::rhoplus::invert(vaguer, insulating, max_rows);
  EXPECT_NEAR(of_vaguer.fit.misfit2 * k * k, base_.fit.misfit2, 1e-6 * base_.fit.misfit2);
}

TEST_F(Symmetry, Conductance_and_gap_are_dual) {
  std::vector<RhoplusDatum> dual = data_;
  for (RhoplusDatum& d : dual) {
    const double relative = d.resistivity_error / d.resistivity;
    d.resistivity = 1e4 / d.resistivity;
    d.resistivity_error = relative * d.resistivity;
    d.phase = 90.0 - d.phase;
  }
  expect_same_misfit(invert_proven(dual, insulating));
}

TEST_F(Symmetry, Order_of_rows_and_unused_rows_make_no_difference) {
  std::vector<RhoplusDatum> shuffled = data_;
  std::reverse(shuffled.begin(), shuffled.end());
  std::rotate(shuffled.begin(), shuffled.begin() + 7, shuffled.end());
  shuffled.push_back({1e-4, 1.0, 1.0, 1.0, 1.0, false, false});
  shuffled.push_back({1e5, 1e9, 1.0, -300.0, 1.0, false, false});
  const RhoplusInversion inversion = numerics::rhoplus::invert(shuffled, insulating, max_rows);
  EXPECT_EQ(inversion.fit.misfit2, base_.fit.misfit2);
  EXPECT_EQ(inversion.fit.model.switches, base_.fit.model.switches);
  // A row that is not used is predicted all the same, and 0 to 90 degrees are all there is.
  for (const numerics::rhoplus::RhoplusPrediction& row : inversion.rows) {
    EXPECT_GT(row.resistivity, 0.0);
    EXPECT_GE(row.phase, 0.0);
    EXPECT_LE(row.phase, 90.0);
  }
}

TEST_F(Symmetry, More_data_and_less_freedom_never_fit_better) {
  EXPECT_GE(invert_proven(data_, conducting).fit.misfit2, base_.fit.misfit2 * (1.0 - 1e-9));
  double before = 0.0;
  std::vector<RhoplusDatum> growing;
  for (const RhoplusDatum& d : data_) {
    growing.push_back(d);
    const RhoplusInversion inversion = numerics::rhoplus::invert(growing, insulating, max_rows);
    EXPECT_GE(inversion.fit.misfit2, before - 1e-4) << growing.size();
    before = inversion.fit.misfit2;
  }
}

TEST(Rhoplus_surface, Conducting_puts_the_first_sheet_at_the_surface) {
  std::vector<RhoplusDatum> data =
      made::sheets(std::vector<numerics::rhoplus::Sheet>{{400.0, 20.0}, {9000.0, 700.0}}, HUGE_VAL,
                   made::frequencies(30, 1e-3, 1e2), 0.03);
  made::add_noise(data, 5);
  const RhoplusInversion on_insulator = invert_proven(data, insulating);
  const RhoplusInversion on_conductor = invert_proven(data, conducting);
  ASSERT_FALSE(on_conductor.sheets.sheets.empty());
  EXPECT_EQ(on_conductor.sheets.sheets[0].depth, 0.0);
  EXPECT_GT(on_insulator.sheets.sheets[0].depth, 100.0);
  // A sheet that conducts next to nothing costs next to nothing.
  EXPECT_NEAR(on_conductor.fit.misfit2, on_insulator.fit.misfit2, 0.05 * on_insulator.fit.misfit2);
}

}  // namespace
