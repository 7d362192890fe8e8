// spline_levels_test.cpp: what the preconditioner needs to be one: symmetric transfers.
#include "numerics/gridding/spline_levels.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace numerics::gridding;

TEST(Spline_levels, Gathering_is_the_transpose_of_refining) {
  std::mt19937 random(3);
  std::normal_distribution<double> normal;
  for (const PlateSize fine : {PlateSize{4, 4}, PlateSize{9, 14}, PlateSize{17, 8}, PlateSize{40, 33}}) {
    std::vector<double> coarse_values(coarser(fine).nodes());
    std::vector<double> fine_values(fine.nodes());
    for (std::vector<double>* values : {&coarse_values, &fine_values}) {
      std::generate(values->begin(), values->end(), [&] { return normal(random); });
    }
    std::vector<double> refined(fine.nodes());
    add_refined(coarse_values, fine, refined);
    std::vector<double> collected(coarse_values.size());
    gather(fine_values, fine, collected);
    EXPECT_NEAR(std::inner_product(refined.begin(), refined.end(), fine_values.begin(), 0.0),
                std::inner_product(collected.begin(), collected.end(), coarse_values.begin(), 0.0), 1e-11)
        << fine.columns << " x " << fine.rows;
  }
}

}  // namespace
