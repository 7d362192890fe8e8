#include "numerics/occam_inversion/visibility.h"

#include <cmath>

#include <gtest/gtest.h>

using namespace numerics::occam_inversion;

namespace {

TEST(Visibility, Sums_the_squares_of_what_the_data_see_by_area) {
  // Three parameters; the last, a static shift, has no area.
  const LinearProblem problem{{3.0, 0.0, 1.0, 4.0, -2.0, 1.0}, {0.0, 0.0}};
  EXPECT_EQ(sensitivities_by_area(problem, 3, std::vector{25.0, 16.0}), (std::vector{1.0, 0.5}));
}

TEST(Visibility, Rises_from_the_5th_to_the_20th_percentile_of_the_logarithms) {
  std::vector<double> sensitivities;
  for (int i = 20; i >= 0; --i) {  // 1e20 down to 1: a percentile each 5 percent
    sensitivities.push_back(std::pow(10.0, i));
  }
  const std::vector<double> visible = visibilities(sensitivities);
  EXPECT_EQ(visible[20], 0.0);
  EXPECT_EQ(visible[19], 0.0);  // the 5th
  EXPECT_NEAR(visible[18], 1.0 / 3.0, 1e-12);
  EXPECT_NEAR(visible[17], 2.0 / 3.0, 1e-12);
  EXPECT_EQ(visible[16], 1.0);  // the 20th
  EXPECT_EQ(visible[0], 1.0);

  EXPECT_EQ(visibilities(std::vector{2.0, 2.0}), (std::vector{1.0, 1.0}));
  EXPECT_EQ(visibilities(std::vector{0.0, 1.0, 1.0, 1.0, 1.0, 1.0})[0], 0.0);  // never seen at all
  EXPECT_TRUE(visibilities({}).empty());
}

}  // namespace
