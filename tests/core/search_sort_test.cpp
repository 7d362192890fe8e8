#include "core/search_sort.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

using basSearchSort::binary_search;
using basSearchSort::find_nearest_frequency;
using basSearchSort::search_sorted;

TEST(Search_sorted, Finds_every_value_and_nothing_else_at_every_length) {
  for (int count = 0; count <= 9; ++count) {
    SCOPED_TRACE(count);
    std::vector<float> values;
    values.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      values.push_back(static_cast<float>(2 * i));
    }
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(search_sorted(values, static_cast<float>(2 * i)), i);
    }
    for (int i = -1; i <= count; ++i) {
      EXPECT_EQ(search_sorted(values, static_cast<float>(2 * i + 1)), -1);
    }
    EXPECT_EQ(search_sorted(values, std::numeric_limits<float>::quiet_NaN()), -1);
  }
  EXPECT_EQ(search_sorted(std::vector<float>{1.0005F}, 1.0F), -1);  // exact, no tolerance
}

TEST(Search_sorted, Ends_on_values_out_of_order) {
  const std::vector<float> values = {5, 1, 4, 1, 3};
  for (const float value : {0.0F, 1.0F, 2.0F, 5.0F, 6.0F}) {
    const int place = search_sorted(values, value);
    EXPECT_TRUE(place == -1 || values.at(static_cast<std::size_t>(place)) == value);
  }
}

TEST(Find_nearest_frequency, Takes_the_nearest_within_the_tolerance) {
  const std::vector<float> values = {1.0F, 2.0F, 4.0F};
  struct Case {
    float value;
    float tolerance;
    int place;
  };
  const Case cases[] = {{1.4F, 0.5F, 0},  {1.6F, 0.5F, 1},  {4.4F, 0.5F, 2},  {0.6F, 0.5F, 0},
                        {3.0F, 1.0F, -1}, {2.5F, 0.5F, -1}, {9.0F, 0.5F, -1}, {2.0F, 0.001F, 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.value);
    EXPECT_EQ(find_nearest_frequency(values, c.value, c.tolerance), c.place);
  }
  EXPECT_EQ(find_nearest_frequency({}, 1.0F, 10.0F), -1);
}

TEST(Binary_search, Compares_whole_or_by_prefix_with_or_without_case) {
  const std::vector<std::string> texts = {"alpha", "Beta", "betamax", "Gamma"};
  EXPECT_EQ(binary_search(texts, "BETA"), 1);
  EXPECT_EQ(binary_search(texts, "bet"), -1);
  EXPECT_EQ(binary_search(texts, "bet", {.prefix_only = true}), 1);
  EXPECT_EQ(binary_search(texts, "betam", {.prefix_only = true}), 2);
  EXPECT_EQ(binary_search(texts, "alpha", {.first = 1}), -1);
  EXPECT_EQ(binary_search(texts, "gamma", {.first = 1, .last = 2}), -1);
  EXPECT_EQ(binary_search(texts, "gamma", {.first = 2, .last = 1}), 3);
  EXPECT_EQ(binary_search(texts, "gamma", {.first = 9, .last = 99}), -1);
  EXPECT_EQ(binary_search({}, "gamma"), -1);
  const std::vector<std::string> by_case = {"Beta", "Gamma", "alpha"};
  EXPECT_EQ(binary_search(by_case, "alpha", {.match_case = true}), 2);
  EXPECT_EQ(binary_search(by_case, "gamma", {.match_case = true}), -1);
}
