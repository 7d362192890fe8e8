#include "numerics/occam_inversion/inversion.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <stdexcept>

#include <gtest/gtest.h>

using namespace numerics::occam_inversion;

namespace {

constexpr std::size_t parameters = 40;

Roughness row_roughness() {
  std::vector<Block> blocks(parameters);
  for (std::size_t place = 0; place < parameters; ++place) {
    blocks[place].left = static_cast<int>(place);
    blocks[place].right = static_cast<int>(place) + 1;
    blocks[place].bottom = 1;
    blocks[place].parameter = place;
  }
  return {blocks, parameters, {}};
}

// Each datum is a bell-shaped mean of the model, bent by `bend`: with 0 the problem is linear.
struct Bells {
  std::size_t data = 25;
  double bend = 0.0;
  std::size_t responses = 0;

  [[nodiscard]] double weight(std::size_t row, std::size_t p) const {
    const double distance =
        (static_cast<double>(p) - static_cast<double>(row) * parameters / static_cast<double>(data)) / 3.0;
    return std::exp(-distance * distance);
  }
  Modelled respond(std::span<const double> model, Derivatives derivatives) {
    ++responses;
    Modelled result;
    for (std::size_t row = 0; row < data; ++row) {
      double sum = 0.0;
      for (std::size_t p = 0; p < parameters; ++p) {
        sum += weight(row, p) * model[p];
      }
      result.values.push_back(sum + bend * sum * sum);
      for (std::size_t p = 0; derivatives == Derivatives::yes && p < parameters; ++p) {
        result.sensitivities.push_back(weight(row, p) * (1.0 + 2.0 * bend * sum));
      }
    }
    return result;
  }
  Problem problem(const std::vector<double>& truth, double error) {
    Problem result;
    result.data = respond(truth, Derivatives::no).values;
    for (std::size_t row = 0; row < data; ++row) {  // errors that alternate, so that a fit to them is known
      result.data[row] += row % 2 == 0 ? error : -error;
    }
    result.errors.assign(data, error);
    result.respond = [this](std::span<const double> model, Derivatives d) { return respond(model, d); };
    return result;
  }
};

std::vector<double> hill() {
  std::vector<double> model(parameters, 2.0);
  for (std::size_t p = 15; p < 25; ++p) {
    model[p] = 1.0;
  }
  return model;
}

State half_space() {
  State state;
  state.model.assign(parameters, 1.5);
  return state;
}

struct Course {
  Outcome outcome;
  std::vector<Iteration> iterations;
};

Course invert_with(const Problem& problem, const Settings& settings, State start) {
  const Roughness roughness = row_roughness();
  Course course;
  course.outcome = invert(problem, roughness, settings, std::move(start),
                          {[&](const Iteration& iteration) { course.iterations.push_back(iteration); }, {}});
  return course;
}

TEST(Occam_inversion, A_linear_problem_fits_after_one_iteration_with_the_smoothest_model) {
  Bells bells;
  const Problem problem = bells.problem(hill(), 0.05);
  for (const Search search : {Search::better, Search::classic}) {
    Settings settings;
    settings.search = search;
    settings.most_iterations = 6;
    const Course course = invert_with(problem, settings, half_space());
    ASSERT_GE(course.iterations.size(), 2U);
    const Iteration& first = course.iterations[1];
    EXPECT_TRUE(first.state.target_reached);
    EXPECT_NEAR(first.rms, 1.0, 2e-3);
    if (search == Search::classic) {  // the next search starts at the minimum, the model lies where it fits
      EXPECT_GT(first.model_log10_multiplier, first.state.log10_multiplier);
    } else {
      EXPECT_EQ(first.model_log10_multiplier, first.state.log10_multiplier);
    }
    // The model of one multiplier that fits to the target: no other iteration finds a smoother one.
    EXPECT_NEAR(course.outcome.last.state.roughness, first.state.roughness, 2e-3 * first.state.roughness);
    EXPECT_EQ(course.outcome.ending, Ending::smooth_and_fitting);
  }
}

TEST(Occam_inversion, Fits_a_bent_problem_and_then_only_gets_smoother) {
  Bells bells;
  bells.bend = 0.05;
  const Problem problem = bells.problem(hill(), 0.1);
  Settings settings;
  settings.most_iterations = 20;
  const Course course = invert_with(problem, settings, half_space());
  EXPECT_EQ(course.outcome.ending, Ending::smooth_and_fitting);
  bool reached = false;
  double roughness = std::numeric_limits<double>::infinity();
  for (const Iteration& iteration : course.iterations) {
    EXPECT_EQ(iteration.modelled.size(), problem.data.size());
    EXPECT_DOUBLE_EQ(iteration.rms, root_mean_square(problem, iteration.modelled));
    if (reached) {
      EXPECT_LE(iteration.rms, 1.0);
      EXPECT_LT(iteration.state.roughness, roughness);
    }
    reached = reached || iteration.state.target_reached;
    roughness = iteration.state.roughness;
  }
  EXPECT_TRUE(reached);
}

TEST(Occam_inversion, Goes_on_from_any_iteration_as_if_it_had_not_ended) {
  for (const Search search : {Search::better, Search::classic}) {
    Bells bells;
    bells.bend = 0.05;
    const Problem problem = bells.problem(hill(), 0.02);
    Settings settings;
    settings.search = search;
    settings.most_iterations = 5;
    const Course whole = invert_with(problem, settings, half_space());
    ASSERT_GE(whole.iterations.size(), 4U);
    settings.most_iterations = static_cast<int>(whole.iterations.size()) - 3;
    const Course rest = invert_with(problem, settings, whole.iterations[2].state);
    ASSERT_EQ(rest.iterations.size() + 2, whole.iterations.size());
    for (std::size_t i = 0; i < rest.iterations.size(); ++i) {
      EXPECT_EQ(rest.iterations[i].state.model, whole.iterations[i + 2].state.model) << i;
      EXPECT_EQ(rest.iterations[i].state.iteration, whole.iterations[i + 2].state.iteration);
    }
  }
}

TEST(Occam_inversion, Ends_for_the_reason_that_it_gives) {
  Bells bells;
  bells.bend = 0.05;
  Settings settings;
  settings.most_iterations = 8;

  // A start that fits is smoothed; what a uniform model fits ends perfectly smooth.
  State start;
  start.model = hill();
  Course course =
      invert_with(bells.problem(std::vector<double>(parameters, 2.0), 1.0), settings, half_space());
  EXPECT_EQ(course.outcome.ending, Ending::perfectly_smooth);
  EXPECT_LT(course.outcome.last.state.roughness, 1e-5);
  const Problem rough = bells.problem(hill(), 0.1);
  course = invert_with(rough, settings, start);
  EXPECT_LT(course.iterations[1].state.roughness, course.iterations[0].state.roughness);

  // A target below what the data allow: no datum twice, so that no model fits both.
  Bells twice;
  twice.data = 60;
  settings.target_rms = 1e-3;
  settings.most_iterations = 40;
  course = invert_with(twice.problem(hill(), 0.1), settings, half_space());
  EXPECT_EQ(course.outcome.ending, Ending::no_better_fit);
  EXPECT_GT(course.outcome.last.rms, 0.1);

  // An error so small that the equations have no solution at any multiplier.
  Problem absurd = rough;
  absurd.errors.front() = 1e-200;
  for (const Search search : {Search::better, Search::classic}) {
    settings.search = search;
    course = invert_with(absurd, settings, half_space());
    EXPECT_EQ(course.outcome.ending, Ending::no_better_fit);
    EXPECT_EQ(course.outcome.last.state.model, half_space().model);
  }
  settings.search = Search::better;

  settings.target_rms = 1.0;
  settings.most_iterations = 1;
  EXPECT_EQ(invert_with(rough, settings, half_space()).outcome.ending, Ending::iterations_done);

  // A stop leaves the last iteration that ended.
  Problem stopping = rough;
  std::size_t left = 6;
  stopping.respond = [&](std::span<const double> model, Derivatives derivatives) {
    if (left-- == 0) {
      throw Stopped();
    }
    return bells.respond(model, derivatives);
  };
  settings.most_iterations = 5;
  course = invert_with(stopping, settings, half_space());
  EXPECT_EQ(course.outcome.ending, Ending::stopped);
  EXPECT_EQ(course.outcome.last.state.model, course.iterations.back().state.model);
}

TEST(Occam_inversion, A_uniform_start_that_fits_is_the_answer) {
  Bells bells;
  Problem problem = bells.problem(std::vector<double>(parameters, 1.5), 0.05);
  const Course course = invert_with(problem, {}, half_space());
  EXPECT_EQ(course.outcome.ending, Ending::perfectly_smooth);
  EXPECT_EQ(course.iterations.size(), 1U);
  EXPECT_TRUE(course.outcome.last.state.target_reached);
}

TEST(Occam_inversion, Looks_for_a_fit_again_where_the_target_is_lower_than_it_was) {
  Bells bells;
  bells.bend = 0.05;
  const Problem problem = bells.problem(hill(), 0.1);
  for (const Search search : {Search::better, Search::classic}) {
    Settings settings;
    settings.search = search;
    settings.target_rms = 3.0;
    const Outcome loose = invert_with(problem, settings, half_space()).outcome;
    ASSERT_TRUE(loose.last.state.target_reached);
    settings.target_rms = 1.0;
    const Course course = invert_with(problem, settings, loose.last.state);
    EXPECT_FALSE(course.iterations.front().state.target_reached);
    EXPECT_NEAR(course.outcome.last.rms, 1.0, 2e-3);
    EXPECT_GT(course.outcome.last.state.roughness, loose.last.state.roughness);
  }
}

TEST(Occam_inversion, Sees_without_many_responses_that_nothing_is_smoother) {
  Bells bells;  // linear: the first model that fits is the smoothest one
  Problem problem = bells.problem(hill(), 0.05);
  Settings settings;
  settings.most_iterations = 1;
  const Outcome fitting = invert_with(problem, settings, half_space()).outcome;
  settings.most_iterations = 10;
  bells.responses = 0;
  const Course course = invert_with(problem, settings, fitting.last.state);
  EXPECT_EQ(course.outcome.ending, Ending::smooth_and_fitting);
  EXPECT_LE(course.iterations.size(), 3U);
  EXPECT_LE(bells.responses, 16U);
}

TEST(Occam_inversion, Shortens_no_step_where_none_may_be_cut) {
  Bells bells;
  bells.bend = 0.05;
  bells.data = 60;  // which no model fits
  const Problem problem = bells.problem(hill(), 0.1);
  for (const Search search : {Search::better, Search::classic}) {
    Settings settings;
    settings.search = search;
    settings.target_rms = 1e-3;
    const Roughness roughness = row_roughness();
    const auto least_share = [&](int most_cuts) {
      settings.most_cuts = most_cuts;
      double least = 1.0;
      (void)invert(problem, roughness, settings, half_space(),
                   {{}, [&](const Trial& trial) { least = std::min(least, trial.share); }});
      return least;
    };
    EXPECT_EQ(least_share(0), 1.0);
    EXPECT_LT(least_share(8), 1.0);
  }
}

TEST(Occam_inversion, Finds_back_from_a_multiplier_far_off) {
  Bells bells;
  bells.bend = 0.05;
  const Problem problem = bells.problem(hill(), 0.1);
  for (const double far_off : {-40.0, 40.0}) {
    State start = half_space();
    start.iteration = 1;
    start.log10_multiplier = far_off;
    const Outcome outcome = invert_with(problem, {}, start).outcome;
    EXPECT_TRUE(outcome.last.state.target_reached) << far_off;
    EXPECT_LT(std::abs(outcome.last.state.log10_multiplier), 10.0) << far_off;
  }
}

TEST(Occam_inversion, Crosses_stretches_where_models_are_alike_or_none) {
  Bells bells;
  Settings settings;
  State start = half_space();
  start.iteration = 1;
  start.log10_multiplier = 8.0;
  for (const double step : {0.05, 0.25, 0.5}) {
    settings.rules = {{}, step, parameters};
    const Course course = invert_with(bells.problem(hill(), 0.02), settings, start);
    EXPECT_LT(course.outcome.last.rms, 0.5 * course.iterations.front().rms) << step;
  }

  // No model at multipliers where it is too even, or too rough.
  settings.rules = {};
  const Problem sound = bells.problem(hill(), 0.1);
  Problem walled = sound;
  double evenest = 0.0;
  double roughest = 0.0;
  walled.respond = [&](std::span<const double> model, Derivatives derivatives) {
    Modelled result = bells.respond(model, derivatives);
    const auto [least, most] = std::ranges::minmax(model);
    if (most > least && (most - least < evenest || most - least > roughest)) {
      result.values.assign(result.values.size(), std::numeric_limits<double>::quiet_NaN());
    }
    return result;
  };
  evenest = 0.5;
  roughest = 1e9;
  EXPECT_TRUE(invert_with(walled, settings, half_space()).outcome.last.state.target_reached);
  evenest = 0.0;
  roughest = 1.5;
  start.log10_multiplier = -6.0;
  EXPECT_TRUE(invert_with(walled, settings, start).outcome.last.state.target_reached);
  roughest = 0.0;
  bells.responses = 0;
  EXPECT_EQ(invert_with(walled, settings, half_space()).outcome.ending, Ending::no_better_fit);
  EXPECT_LT(bells.responses, 40U);
}

TEST(Occam_inversion, Keeps_below_a_target_that_the_misfit_jumps_over) {
  Bells bells;
  Problem problem = bells.problem(hill(), 0.1);
  problem.respond = [&](std::span<const double> model, Derivatives derivatives) {
    Modelled result = bells.respond(model, derivatives);
    const double rms = root_mean_square(problem, result.values);
    const double part = rms > 0.95 ? (rms + 0.07) / rms : 1.0;
    for (std::size_t row = 0; row < result.values.size(); ++row) {
      result.values[row] = problem.data[row] - part * (problem.data[row] - result.values[row]);
    }
    return result;
  };
  for (const Search search : {Search::better, Search::classic}) {
    Settings settings;
    settings.search = search;
    settings.most_iterations = 1;
    const Outcome outcome = invert_with(problem, settings, half_space()).outcome;
    EXPECT_TRUE(outcome.last.state.target_reached);
    EXPECT_LE(outcome.last.rms, 1.0);
    EXPECT_GT(outcome.last.rms, 0.94);
  }
}

TEST(Occam_inversion, Limits_and_steps_of_resistivities_leave_static_shifts_alone) {
  std::vector<double> model{0.2, 4.17, 5.0, -0.123};
  ModelRules{{{0.5, 4.3}}, 0.1, 3}.apply(model);
  EXPECT_EQ(model[0], 0.5);
  EXPECT_NEAR(model[1], 4.2, 1e-12);
  EXPECT_EQ(model[2], 4.3);
  EXPECT_EQ(model[3], -0.123);
}

TEST(Occam_inversion, Keeps_to_limits_and_steps_and_weighs_outliers_down) {
  Bells bells;
  Problem problem = bells.problem(hill(), 0.05);
  Settings settings;
  settings.rules = {{{1.2, 1.9}}, 0.1, parameters};
  settings.most_iterations = 3;
  for (const double value : invert_with(problem, settings, half_space()).outcome.last.state.model) {
    EXPECT_GE(value, 1.2 - 1e-12);
    EXPECT_LE(value, 1.9 + 1e-12);
    EXPECT_NEAR(value * 10.0, std::round(value * 10.0), 1e-9);
  }

  settings.rules = {};
  settings.most_iterations = 10;
  settings.target_rms = 2.0;
  problem.data[12] += 1.0;  // 20 errors off
  const auto away_from_truth = [&](bool robust) {
    settings.robust = robust;
    const std::vector<double> model = invert_with(problem, settings, half_space()).outcome.last.state.model;
    const std::vector<double> truth = hill();
    return std::transform_reduce(model.begin(), model.end(), truth.begin(), 0.0, std::plus<>(),
                                 [](double a, double b) { return std::abs(a - b); }) /
           static_cast<double>(parameters);
  };
  EXPECT_LT(3.0 * away_from_truth(true), away_from_truth(false));
}

TEST(Occam_inversion, Refuses_what_has_no_answer) {
  Bells bells;
  const Problem good = bells.problem(hill(), 0.05);
  const auto refusal = [&](const Problem& problem, const State& start) -> std::string {
    try {
      (void)invert_with(problem, {}, start);
    } catch (const std::invalid_argument& failure) {
      return failure.what();
    }
    return {};
  };
  Problem bad = good;
  bad.errors[16] = 0.0;
  EXPECT_EQ(refusal(bad, half_space()), "row 17 of the data has an error of 0");
  bad = good;
  bad.data[0] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refusal(bad, half_space()), "row 1 of the data is not a number");
  State start = half_space();
  start.model.pop_back();
  EXPECT_EQ(refusal(good, start), "the start has 39 parameters, the model 40");
  start = half_space();
  start.model[4] = std::numeric_limits<double>::infinity();
  EXPECT_EQ(refusal(good, start), "parameter 5 of the start is not a number");
  EXPECT_EQ(refusal(Problem{}, half_space()), "there are no data");
}

}  // namespace
