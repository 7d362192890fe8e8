// iteration_estimate_test.cpp: what is told of an iteration under way, and what a user types before.
#include "occam/inversion/iteration_estimate.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "occam/inversion/inversion_entries.h"
#include "tests/formats/occam/made_run.h"
#include "tests/occam/inversion/made_inversion.h"

namespace Module_occam {
namespace {

/// Goes through iterations as an inversion does, told ten times in each of its parts.
class Course {
 public:
  void part(int iteration, int trial, double seconds) {
    constexpr int reports = 10;
    for (int i = 0; i <= reports; ++i) {
      const double share = static_cast<double>(i) / reports;
      estimate.take({iteration, trial, share, iteration == 0}, now + share * seconds);
      shares.push_back(estimate.share());
    }
    now += seconds;
  }
  void iteration(int number, int trials) {
    shares.clear();
    part(number, 0, 5.0);
    for (int trial = 1; trial <= trials; ++trial) {
      part(number, trial, 2.0);
    }
  }

  IterationEstimate estimate;
  std::vector<double> shares;  // of the iteration under way
  double now = 100.0;
};

TEST(Iteration_estimate, Shares_grow_and_stay_below_the_whole_whatever_the_number_of_trials) {
  Course course;
  course.part(0, 0, 2.0);
  for (const int trials : {8, 3, 25, 6}) {
    course.iteration(1 + (trials == 3) + 2 * (trials == 25) + 3 * (trials == 6), trials);
    EXPECT_TRUE(std::is_sorted(course.shares.begin(), course.shares.end()));
    EXPECT_LT(course.shares.front(), 0.05);
    EXPECT_GT(course.shares.back(), 0.3);
    EXPECT_LT(course.shares.back(), 1.0);
  }
}

TEST(Iteration_estimate, Times_come_from_what_was_measured) {
  Course course;
  EXPECT_FALSE(course.estimate.seconds_left());
  course.estimate.take({0, 0, 0.4, true}, 99.0);
  EXPECT_NEAR(course.estimate.share(), 0.4, 1e-9);  // of the start's response
  course.part(0, 0, 2.0);
  EXPECT_NEAR(course.estimate.share(), 0.99, 1e-9);
  EXPECT_EQ(course.estimate.text(), "Response of the start, less than 1 s left");
  course.iteration(1, 8);
  course.iteration(2, 8);
  course.part(3, 0, 5.0);
  course.part(3, 1, 2.0);
  course.part(3, 2, 2.0);
  // Six of eight trials of 2 s each are left.
  EXPECT_NEAR(course.estimate.seconds_left().value_or(0.0), 12.0, 0.1);
  EXPECT_NEAR(course.estimate.share(), 9.0 / 21.0, 0.01);
  EXPECT_EQ(course.estimate.text(), "Iteration 3, trial 2, about 10 s left");
}

TEST(Iteration_estimate, What_nobody_looked_at_is_no_lie_later) {
  IterationEstimate estimate;
  estimate.take({1, 2, 0.5}, 10.0);  // the start and the sensitivities were over before
  EXPECT_EQ(estimate.text(), "Iteration 1, trial 2");
  estimate.take({1, 4, 0.5}, 12.0);
  EXPECT_EQ(estimate.text(), "Iteration 1, trial 4, about 5 s left");
  estimate.take({2, 3, 0.0}, 15.0);
  EXPECT_EQ(estimate.text().substr(0, 20), "Iteration 2, trial 3");
  EXPECT_LT(estimate.share(), 0.5);
}

TEST(Iteration_estimate, Times_are_rounded_as_one_would_say_them) {
  EXPECT_EQ(time_left_text(0.4), "less than 1 s left");
  EXPECT_EQ(time_left_text(7.4), "about 7 s left");
  EXPECT_EQ(time_left_text(43.0), "about 45 s left");
  EXPECT_EQ(time_left_text(200.0), "about 3 min left");
  EXPECT_EQ(time_left_text(9000.0), "about 2.5 h left");
}

TEST(Inversion_entries, Become_options_or_a_sentence) {
  InversionEntries entries;
  entries.target_rms = " 1.2 ";
  entries.static_shifts = true;
  const InversionOptions options = options_of(entries);
  EXPECT_EQ(options.iterations, 10);
  EXPECT_EQ(options.target_rms, 1.2);
  EXPECT_EQ(options.static_shift, 0.1);
  const auto refused = [](std::string InversionEntries::*entry, const char* text) {
    InversionEntries bad;
    bad.static_shifts = true;
    bad.*entry = text;
    try {
      (void)options_of(bad);
      return std::string();
    } catch (const std::exception& failure) {
      return std::string(failure.what());
    }
  };
  for (const char* const text : {"", "x", "0", "-1", "2.5", "513", "1e9", "inf"}) {
    EXPECT_EQ(refused(&InversionEntries::iterations, text),
              "The number of iterations \"" + std::string(text) + "\" is not a whole number from 1 to 512.");
  }
  for (const char* const text : {"", "x", "0", "-1", "1e999", "nan"}) {
    EXPECT_NE(refused(&InversionEntries::target_rms, text), "") << text;
    EXPECT_NE(refused(&InversionEntries::static_shift_error, text), "") << text;
  }
  EXPECT_NE(refused(&InversionEntries::roughness_type, "300"), "");
}

TEST(Inversion_entries, Proposed_from_a_file_are_accepted) {
  const TemporaryFolder folder;
  static_cast<void>(folder.write(
      "startup", made::replaced(made::inverted_start(), "IRUF:             1", "IRUF:             -3")));
  EXPECT_EQ(options_of(proposed_entries(folder.folder(), "")).roughness_type, 3);
}

}  // namespace
}  // namespace Module_occam
