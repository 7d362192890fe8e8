#include "reduction/repeat_sums.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "tests/reduction/made_readings.h"

using namespace Module_averaged_data;
using made::StoredReading;
using Module_database::Curve;

namespace {

Curve average_of(const std::vector<float>& list, const std::vector<StoredReading>& repeats) {
  RepeatSums sums(list);
  for (const StoredReading& repeat : repeats) {
    sums.add(repeat);
  }
  return sums.average();
}

}  // namespace

TEST(Repeat_sums, Agree_with_double_precision_statistics) {
  std::mt19937 random(4);
  std::lognormal_distribution<float> resistivity(4.0F, 0.5F);
  std::normal_distribution<float> phase(45.0F, 8.0F);
  const std::vector<float> list{1.0F, 2.0F, 4.0F};
  std::vector<StoredReading> repeats;
  repeats.reserve(25);
  for (int i = 0; i < 25; ++i) {
    repeats.push_back(made::reading({{1.0F, resistivity(random), phase(random)},
                                     {2.0F, resistivity(random), phase(random)},
                                     {4.0F, resistivity(random), phase(random)}}));
  }
  const Curve average = average_of(list, repeats);
  ASSERT_EQ(average.count(), 3U);
  for (std::size_t point = 0; point < 3; ++point) {
    for (const int field : {1, 2}) {
      double mean = 0.0;
      double variance = 0.0;
      for (const StoredReading& repeat : repeats) {
        mean += double{repeat.curve.value(field, point)} / 25.0;
      }
      for (const StoredReading& repeat : repeats) {
        variance += std::pow(double{repeat.curve.value(field, point)} - mean, 2) / 25.0;
      }
      // Each of 25 additions rounds to 6e-8 of its result; the variance is the small rest of large sums.
      EXPECT_NEAR(average.value(field, point) / mean, 1.0, 2e-6);
      EXPECT_NEAR(average.value(field + 2, point), std::sqrt(variance), 5e-4 * mean);
      EXPECT_EQ(average.value(field + 4, point), average.value(field, point));
      EXPECT_EQ(average.value(field + 6, point), average.value(field + 2, point));
    }
    EXPECT_NEAR(average.value(9, point), 9000.0F + list[point], 0.01);
    EXPECT_NEAR(average.value(20, point), 20000.0F + list[point], 0.02);
  }
}

TEST(Repeat_sums, Deviation_of_one_value_or_of_equal_pairs_is_exactly_0) {
  for (const float value : {0.1F, 33.3F, 24000.0F / 7.0F, 1.2345678e9F, 9.87654e-6F, 3.3e18F}) {
    SCOPED_TRACE(value);
    const StoredReading repeat = made::reading({{8.0F, value, value}});
    for (const std::vector<StoredReading>& repeats : {std::vector{repeat}, std::vector{repeat, repeat}}) {
      const Curve average = average_of({8.0F}, repeats);
      ASSERT_EQ(average.count(), 1U);
      EXPECT_EQ(average.value(1, 0), value);
      EXPECT_EQ(average.value(3, 0), 0.0F);
      EXPECT_EQ(average.value(4, 0), 0.0F);
      EXPECT_EQ(average.value(7, 0), 0.0F);
    }
  }
}

TEST(Repeat_sums, Are_kept_in_single_precision) {
  // 2^24 + 1 is no single: the 1 is lost in the sum, and in the sum of squares as well.
  const Curve average =
      average_of({8.0F}, {made::reading({{8.0F, 16777216.0F, 30.0F}}), made::reading({{8.0F, 1.0F, 40.0F}})});
  EXPECT_EQ(average.value(1, 0), 8388608.0F);
  EXPECT_EQ(average.value(3, 0), 8388608.0F);
  EXPECT_EQ(average.value(2, 0), 35.0F);
  EXPECT_EQ(average.value(4, 0), 5.0F);

  // Squares of 1e25 are beyond the single range: the mean is still good, the deviation isn't known.
  const Curve large = average_of({8.0F}, {made::reading({{8.0F, 1e25F, 30.0F}})});
  EXPECT_EQ(large.value(1, 0), 1e25F);
  EXPECT_EQ(large.value(3, 0), no_data);
  EXPECT_EQ(large.counts_at(1, 0), 1);
}

TEST(Repeat_sums, Honour_masks_switches_and_absent_values) {
  struct Case {
    const char* name;
    void (*change)(StoredReading& second);  // the first repeat has 10 ohm-m, 40 degrees; the second 30, 60
    float fields[8];
    std::int32_t masks[2];
  };
  const Case cases[] = {
      {"both count", [](StoredReading&) {}, {20, 50, 10, 10, 20, 50, 10, 10}, {1, 1}},
      {"second resistivity masked",
       [](StoredReading& second) { second.curve.counts_at(1, 0) = 0; },
       {10, 50, 0, 10, 20, 50, 10, 10},
       {1, 1}},
      {"second resistivity off",
       [](StoredReading& second) { second.UseResistivity = false; },
       {10, 50, 0, 10, 20, 50, 10, 10},
       {1, 1}},
      {"second phase off",
       [](StoredReading& second) { second.UsePhase = false; },
       {20, 40, 10, 0, 20, 50, 10, 10},
       {1, 1}},
      {"second reading off",
       [](StoredReading& second) { second.UseReading = false; },
       {10, 40, 0, 0, 10, 40, 0, 0},
       {1, 1}},
      // The sum is divided by two repeats though one of them has no value; the deviation counts one value.
      {"second resistivity absent",
       [](StoredReading& second) { second.curve.value(1, 0) = no_data; },
       {10, 50, 0, 10, 5, 50, 0, 10},
       {1, 1}},
      {"second resistivity not a number",
       [](StoredReading& second) { second.curve.value(1, 0) = std::nanf(""); },
       {10, 50, 0, 10, 5, 50, 0, 10},
       {1, 1}},
      {"mask of another value than 1",
       [](StoredReading& second) { second.curve.counts_at(2, 0) = 2; },
       {20, 40, 10, 0, 20, 50, 10, 10},
       {1, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StoredReading second = made::reading({{8.0F, 30.0F, 60.0F}});
    c.change(second);
    const Curve average = average_of({8.0F}, {made::reading({{8.0F, 10.0F, 40.0F}}), second});
    ASSERT_EQ(average.count(), 1U);
    for (int field = 1; field <= 8; ++field) {
      EXPECT_EQ(average.value(field, 0), c.fields[field - 1]) << "field " << field;
    }
    EXPECT_EQ(average.counts_at(1, 0), c.masks[0]);
    EXPECT_EQ(average.counts_at(2, 0), c.masks[1]);
  }
}

TEST(Repeat_sums, A_frequency_without_used_values_stays_masked_and_absent) {
  StoredReading first = made::reading({{8.0F, 10.0F, 40.0F}});
  StoredReading second = made::reading({{8.0F, 30.0F, 60.0F}});
  first.curve.counts_at(1, 0) = 0;
  second.curve.counts_at(1, 0) = 0;
  first.curve.value(2, 0) = no_data;
  second.curve.value(2, 0) = no_data;
  second.curve.value(19, 0) = no_data;
  const Curve average = average_of({8.0F}, {first, second});
  EXPECT_EQ(average.value(1, 0), no_data);
  EXPECT_EQ(average.value(3, 0), no_data);
  EXPECT_EQ(average.counts_at(1, 0), 0);
  EXPECT_EQ(average.value(5, 0), 20.0F);  // present, though masked
  EXPECT_EQ(average.value(7, 0), 10.0F);
  EXPECT_EQ(average.value(2, 0), no_data);
  EXPECT_EQ(average.value(6, 0), 0.0F);  // nothing present
  EXPECT_EQ(average.value(8, 0), 0.0F);
  EXPECT_EQ(average.counts_at(2, 0), 0);
  EXPECT_EQ(average.value(19, 0), 19008.0F);  // the one that is present
}

TEST(Repeat_sums, Lay_repeats_of_different_lengths_on_the_frequency_list) {
  StoredReading switched_off = made::reading({{16.0F, 1.0F, 1.0F}});
  switched_off.UseReading = false;
  const Curve average = average_of(
      {1.0F, 2.0F, 4.0F, 8.0F, 16.0F, 32.0F},
      {made::reading({{2.0F, 10.0F, 40.0F}, {8.0F, 20.0F, 50.0F}, {32.0F, 5.0F, 60.0F}}), switched_off,
       made::reading({{1.0F, 70.0F, 10.0F}, {2.0F, 30.0F, 20.0F}, {3.0F, 99.0F, 99.0F}, {64.0F, 9.0F, 9.0F}}),
       made::reading({})});
  EXPECT_EQ(average.frequencies, (std::vector<float>{1.0F, 2.0F, 8.0F, 32.0F}));
  const float resistivities[] = {70.0F, 20.0F, 20.0F, 5.0F};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(average.value(1, i), resistivities[i]);
  }
  EXPECT_EQ(average_of({}, {made::reading({{1.0F, 1.0F, 1.0F}})}).count(), 0U);
}

TEST(Repeat_sums, Errors_are_those_of_the_mean_over_the_used_values) {
  struct Case {
    const char* name;
    void (*change)(StoredReading& first,
                   StoredReading& second);  // 3 ohm-m, 0.6 degrees; 4 ohm-m, 0.8 degrees
    float resistivity, phase;
  };
  const Case cases[] = {
      {"both count", [](auto&, auto&) {}, 2.5F, 0.5F},
      {"second without errors", [](auto&, auto& second) { second.curve.errors.clear(); }, no_data, no_data},
      {"first without errors", [](auto& first, auto&) { first.curve.errors.clear(); }, no_data, no_data},
      {"second without that of the phase", [](auto&, auto& second) { second.curve.error_at(2, 0) = no_data; },
       2.5F, no_data},
      {"second without errors, and masked",
       [](auto&, auto& second) {
         second.curve.errors.clear();
         second.curve.mask = {0, 0};
       },
       3.0F, 0.6F},
      {"first phase masked", [](auto& first, auto&) { first.curve.counts_at(2, 0) = 0; }, 2.5F, 0.8F},
      {"first resistivity off", [](auto& first, auto&) { first.UseResistivity = false; }, 4.0F, 0.5F},
      {"first reading off", [](auto& first, auto&) { first.UseReading = false; }, 4.0F, 0.8F},
      {"second resistivity absent", [](auto&, auto& second) { second.curve.value(1, 0) = no_data; }, 3.0F,
       0.5F},
      {"both phases masked",
       [](auto& first, auto& second) {
         first.curve.counts_at(2, 0) = 0;
         second.curve.counts_at(2, 0) = 0;
       },
       2.5F, no_data},
      {"an error of 0", [](auto& first, auto&) { first.curve.error_at(1, 0) = 0.0F; }, 2.0F, 0.5F},
      {"an error without bound", [](auto& first, auto&) { first.curve.error_at(1, 0) = HUGE_VALF; }, no_data,
       0.5F},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StoredReading first = made::with_errors(made::reading({{8.0F, 10.0F, 40.0F}}), 3.0F, 0.6F);
    StoredReading second = made::with_errors(made::reading({{8.0F, 30.0F, 60.0F}}), 4.0F, 0.8F);
    c.change(first, second);
    const Curve average = average_of({8.0F}, {first, second});
    EXPECT_EQ(average.error(1, 0), c.resistivity);
    EXPECT_FLOAT_EQ(average.error(2, 0), c.phase);
  }
  EXPECT_TRUE(average_of({8.0F}, {made::reading({{8.0F, 10.0F, 40.0F}})}).errors.empty());
}

TEST(Repeat_sums, Errors_stay_at_their_frequencies) {
  const Curve average =
      average_of({1.0F, 2.0F, 4.0F, 8.0F},
                 {made::with_errors(made::reading({{2.0F, 10.0F, 40.0F}, {8.0F, 20.0F, 50.0F}}), 3.0F, 0.5F),
                  made::with_errors(made::reading({{1.0F, 10.0F, 40.0F}, {2.0F, 20.0F, 50.0F}}), 4.0F, 0.5F),
                  made::reading({{4.0F, 10.0F, 40.0F}})});
  EXPECT_EQ(average.error(1, 0), 4.0F);
  EXPECT_EQ(average.error(1, 1), 2.5F);
  EXPECT_EQ(average.error(1, 2), no_data);
  EXPECT_EQ(average.error(1, 3), 3.0F);
}
