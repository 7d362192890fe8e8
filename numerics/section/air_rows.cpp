#include "numerics/section/air_rows.h"

#include <cmath>
#include <cstddef>

namespace numerics::section {

namespace {

constexpr std::size_t row_count = 10;

// 1 + x + ... + x^9
double sum_of_powers(double x) {
  double sum = 0.0;
  for (std::size_t row = 0; row < row_count; ++row) {
    sum = sum * x + 1.0;
  }
  return sum;
}

/// @param height  of all rows, in units of the first one
double growth_to(double height) {
  constexpr double close_enough = 1e-4;
  double low = 1.0;
  double high = std::pow(height, 0.25);
  if (height < static_cast<double>(row_count)) {
    return high;
  }
  double middle = 0.5 * (low + high);
  while ((middle - low) / middle >= close_enough) {
    (sum_of_powers(middle) < height ? low : high) = middle;
    middle = 0.5 * (low + high);
  }
  return middle;
}

}  // namespace

std::vector<double> air_rows(double first_height, double mesh_width) {
  const double growth = growth_to(0.5 * mesh_width / first_height);
  std::vector<double> heights = {first_height};
  while (heights.size() < row_count) {
    heights.push_back(heights.back() * growth);
  }
  return heights;
}

}  // namespace numerics::section
