// median.h: the middle of values.
#pragma once
#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

/// The middle value, of an even number the mean of the two in the middle.
inline double median(std::vector<double> values, double of_none = std::numeric_limits<double>::quiet_NaN()) {
  if (values.empty()) {
    return of_none;
  }
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return values.size() % 2 == 1 ? *middle : (*std::max_element(values.begin(), middle) + *middle) / 2.0;
}
