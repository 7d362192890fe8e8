#include "reduction/merge_curves.h"

#include <map>
#include <random>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "tests/reduction/made_readings.h"

using namespace Module_averaged_data;
using made::StoredReading;
using Module_database::Curve;

namespace {

Curve merged_of(const std::vector<StoredReading>& averages) {
  MergedCurve merged;
  for (const StoredReading& average : averages) {
    merged.add(average);
  }
  return merged.finish();
}

}  // namespace

TEST(Merged_curve, Shared_frequency) {
  struct Case {
    const char* name;
    void (*change)(StoredReading& low, StoredReading& high);  // 10 ohm-m, 40 degrees; 30 ohm-m, 60 degrees
    float resistivity, phase;
    std::int32_t masks[2];
  };
  const Case cases[] = {
      {"mean of both", [](auto&, auto&) {}, 20.0F, 50.0F, {1, 1}},
      {"offsets",
       [](auto&, auto& high) {
         high.ResOffset = 2.0F;
         high.PhaseOffset = -10.0F;
       },
       35.0F,
       45.0F,
       {1, 1}},
      {"low masked", [](auto& low, auto&) { low.curve.counts_at(1, 0) = 0; }, 30.0F, 50.0F, {1, 1}},
      {"high masked", [](auto&, auto& high) { high.curve.counts_at(1, 0) = 0; }, 10.0F, 50.0F, {1, 1}},
      {"low resistivity off", [](auto& low, auto&) { low.UseResistivity = false; }, 30.0F, 50.0F, {1, 1}},
      {"high phase off", [](auto&, auto& high) { high.UsePhase = false; }, 20.0F, 40.0F, {1, 1}},
      {"low absent", [](auto& low, auto&) { low.curve.value(2, 0) = no_data; }, 20.0F, 60.0F, {1, 1}},
      {"both masked",
       [](auto& low, auto& high) {
         low.curve.counts_at(1, 0) = 0;
         high.curve.counts_at(1, 0) = 0;
       },
       no_data,
       50.0F,
       {0, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StoredReading low = made::reading({{8.0F, 10.0F, 40.0F}});
    StoredReading high = made::reading({{8.0F, 30.0F, 60.0F}});
    low.curve.value(3, 0) = 1.0F;
    high.curve.value(3, 0) = 2.0F;
    c.change(low, high);
    const Curve merged = merged_of({low, high});
    ASSERT_EQ(merged.count(), 1U);
    EXPECT_EQ(merged.value(1, 0), c.resistivity);
    EXPECT_EQ(merged.value(2, 0), c.phase);
    EXPECT_EQ(merged.value(3, 0), 2.0F);  // the higher scan rate's, whatever its masks and switches
    EXPECT_EQ(merged.counts_at(1, 0), c.masks[0]);
    EXPECT_EQ(merged.counts_at(2, 0), c.masks[1]);
  }
}

TEST(Merged_curve, Of_one_scan_rate_is_its_average_with_the_offsets) {
  StoredReading average = made::reading({{1.0F, 10.0F, 40.0F}, {2.0F, 20.0F, 50.0F}});
  average.ResOffset = 3.0F;
  average.PhaseOffset = 5.0F;
  average.curve.counts_at(2, 1) = 0;
  Curve expected = average.curve;
  expected.value(1, 0) = 30.0F;
  expected.value(1, 1) = 60.0F;
  expected.value(2, 0) = 45.0F;
  expected.value(2, 1) = no_data;
  const Curve merged = merged_of({average});
  EXPECT_EQ(merged.frequencies, expected.frequencies);
  EXPECT_EQ(merged.data, expected.data);
  EXPECT_EQ(merged.mask, expected.mask);
  EXPECT_EQ(merged_of({}).count(), 0U);
}

TEST(Merged_curve, A_frequency_that_a_reading_has_twice) {
  // A later scan rate that repeats a frequency counts twice; the first one keeps both of its points.
  const StoredReading once = made::reading({{4.0F, 10.0F, 45.0F}});
  const StoredReading twice = made::reading({{4.0F, 40.0F, 45.0F}, {4.0F, 70.0F, 45.0F}});
  const Curve later = merged_of({once, twice});
  ASSERT_EQ(later.count(), 1U);
  EXPECT_EQ(later.value(1, 0), 40.0F);
  const Curve new_in_later = merged_of({made::reading({{2.0F, 1.0F, 1.0F}}), twice});
  ASSERT_EQ(new_in_later.count(), 2U);
  EXPECT_EQ(new_in_later.value(1, 1), 55.0F);
  EXPECT_EQ(merged_of({twice}).count(), 2U);
}

TEST(Merged_curve, Union_of_many_scan_rates) {
  std::mt19937 random(11);
  std::uniform_real_distribution<float> resistivity(1.0F, 1000.0F);
  struct Expected {
    double sum = 0.0;
    int contributions = 0;
    float last_field_20 = 0.0F;
  };
  std::map<float, Expected> expected;
  std::vector<StoredReading> averages;
  for (int scan_rate = 0; scan_rate < 6; ++scan_rate) {
    std::map<float, float> points;
    while (points.size() < 80) {
      points[static_cast<float>(1 + random() % 300) * 0.5F] = resistivity(random);
    }
    std::vector<made::Point> list;
    list.reserve(points.size());
    for (const auto& [frequency, value] : points) {
      list.push_back({frequency, value, 45.0F});
    }
    StoredReading average = made::reading(list);
    average.ResOffset = 1.0F + 0.25F * static_cast<float>(scan_rate);
    for (std::size_t i = 0; i < list.size(); ++i) {
      average.curve.value(20, i) = resistivity(random);
      average.curve.counts_at(1, i) = random() % 4 == 0 ? 0 : 1;
      Expected& at = expected[list[i].frequency];
      at.last_field_20 = average.curve.value(20, i);
      if (average.curve.counts_at(1, i) == 1) {
        at.sum += double{list[i].resistivity} * double{average.ResOffset};
        ++at.contributions;
      }
    }
    averages.push_back(average);
  }
  const Curve merged = merged_of(averages);
  ASSERT_EQ(merged.count(), expected.size());
  std::size_t index = 0;
  for (const auto& [frequency, at] : expected) {
    EXPECT_EQ(merged.frequencies[index], frequency);
    EXPECT_EQ(merged.value(20, index), at.last_field_20);
    if (at.contributions == 0) {
      EXPECT_EQ(merged.value(1, index), no_data);
      EXPECT_EQ(merged.counts_at(1, index), 0);
    } else {
      EXPECT_NEAR(double{merged.value(1, index)} * at.contributions / at.sum, 1.0, 1e-6);  // six roundings
      EXPECT_EQ(merged.counts_at(1, index), 1);
    }
    ++index;
  }
}

TEST(Merged_curve, Errors_are_those_of_the_mean_over_the_scan_rates) {
  struct Case {
    const char* name;
    void (*change)(StoredReading& low, StoredReading& high);  // 3 ohm-m, 0.6 degrees; 2 ohm-m times 2, 0.8
    float resistivity, phase;
  };
  const Case cases[] = {
      {"both contribute", [](auto&, auto&) {}, 2.5F, 0.5F},
      {"low without errors", [](auto& low, auto&) { low.curve.errors.clear(); }, no_data, no_data},
      {"high without errors", [](auto&, auto& high) { high.curve.errors.clear(); }, no_data, no_data},
      {"low without errors, and off",
       [](auto& low, auto&) {
         low.curve.errors.clear();
         low.UseResistivity = false;
         low.UsePhase = false;
       },
       4.0F, 0.8F},
      {"low masked",
       [](auto& low, auto&) {
         low.curve.mask = {0, 0};
       },
       4.0F, 0.8F},
      {"high resistivity masked", [](auto&, auto& high) { high.curve.counts_at(1, 0) = 0; }, 3.0F, 0.5F},
      {"all phases masked",
       [](auto& low, auto& high) {
         low.curve.counts_at(2, 0) = 0;
         high.curve.counts_at(2, 0) = 0;
       },
       2.5F, no_data},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StoredReading low = made::with_errors(made::reading({{8.0F, 10.0F, 40.0F}}), 3.0F, 0.6F);
    StoredReading high = made::with_errors(made::reading({{8.0F, 30.0F, 60.0F}}), 2.0F, 0.8F);
    high.ResOffset = 2.0F;
    high.PhaseOffset = -10.0F;
    c.change(low, high);
    const Curve merged = merged_of({low, high});
    EXPECT_EQ(merged.error(1, 0), c.resistivity);
    EXPECT_FLOAT_EQ(merged.error(2, 0), c.phase);
  }
}

TEST(Merged_curve, Errors_stay_at_their_frequencies) {
  const auto curve = [](const std::vector<made::Point>& points, float error) {
    return made::with_errors(made::reading(points), error, 1.0F);
  };
  const Curve merged = merged_of(
      {curve({{2.0F, 10.0F, 40.0F}, {8.0F, 10.0F, 40.0F}}, 3.0F), made::reading({{1.0F, 10.0F, 40.0F}}),
       curve({{4.0F, 10.0F, 40.0F}, {8.0F, 10.0F, 40.0F}, {16.0F, 10.0F, 40.0F}}, 4.0F)});
  const float expected[] = {no_data, 3.0F, 4.0F, 2.5F, 4.0F};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(merged.error(1, i), expected[i]) << i;
  }
  EXPECT_TRUE(merged_of({made::reading({{1.0F, 10.0F, 40.0F}})}).errors.empty());
}
