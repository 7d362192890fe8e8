// block_resolution_test.cpp: what the data see of a small run, against matrices laid out by hand.
#include "occam/inversion/block_resolution.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include "occam/inversion/inversion_input.h"
#include "tests/occam/results/made_results.h"

namespace Module_occam {
namespace {

constexpr Eigen::Index blocks = 9;

using Matrix = Eigen::MatrixXd;
using Vector = Eigen::VectorXd;

class Block_resolution : public ::testing::Test {
 protected:
  Block_resolution() { static_cast<void>(made::write_results(folder)); }

  TemporaryFolder folder;
};

Matrix derivatives_over_errors(const InversionInput& input) {
  const RunProblem run(input.model, input.data, {1, std::nullopt}, {});
  const auto modelled =
      run.modelled(input.start.parameters, numerics::occam_inversion::Derivatives::yes).sensitivities;
  const auto rows = static_cast<Eigen::Index>(input.data.rows.size());
  Matrix result(rows, blocks);
  for (Eigen::Index row = 0; row < rows; ++row) {
    for (Eigen::Index p = 0; p < blocks; ++p) {
      result(row, p) = modelled[static_cast<std::size_t>(row * blocks + p)] /
                       input.data.rows[static_cast<std::size_t>(row)].error;
    }
  }
  return result;
}

TEST_F(Block_resolution, Is_that_of_the_linearised_problem_at_the_iterations_multiplier) {
  static_cast<void>(folder.write("iter_3", made::replaced(made::iteration_text(3, made::nine_parameters),
                                                          "PMU:              5.0", "PMU:              0.5")));
  const auto resolution = block_resolution(folder.path(""), "iter_3", 2, {});
  ASSERT_TRUE(resolution);
  ASSERT_EQ(resolution->sensitivity.size(), blocks);
  ASSERT_EQ(resolution->standard_errors.size(), blocks);

  const Matrix j = derivatives_over_errors(read_inversion_input(folder.path(""), "iter_3"));
  // Five blocks 20 m high over four of 520 m.
  const std::array<double, blocks> widths{1000, 10, 20, 70, 1000, 1000, 30, 70, 1000};
  Matrix system = j.transpose() * j;
  const std::array<std::pair<int, int>, 12> links{
      {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {5, 6}, {6, 7}, {7, 8}, {0, 5}, {1, 6}, {2, 6}, {3, 7}, {4, 8}}};
  for (const auto& [a, b] : links) {
    Vector difference = Vector::Zero(blocks);
    difference[a] = -1.0;
    difference[b] = 1.0;
    system += std::pow(10.0, 0.5) * difference * difference.transpose();
  }
  const Matrix inverse = system.inverse();
  const Matrix covariance = inverse * (j.transpose() * j) * inverse;
  for (Eigen::Index p = 0; p < blocks; ++p) {
    const auto i = static_cast<std::size_t>(p);
    const double area = widths[i] * (p < 5 ? 20.0 : 520.0);
    EXPECT_NEAR(resolution->sensitivity[i] / (j.col(p).norm() / std::sqrt(area)), 1.0, 1e-8) << p;
    EXPECT_NEAR(resolution->standard_errors[i] / std::sqrt(covariance(p, p)), 1.0, 1e-8) << p;
  }
  // The sites are over the second and the fourth block.
  EXPECT_EQ(resolution->visibility[3], 1.0);
  EXPECT_EQ(*std::ranges::min_element(resolution->visibility), 0.0);
}

TEST_F(Block_resolution, Tells_how_far_it_is_and_stops_when_told) {
  double last = 0.0;
  ASSERT_TRUE(block_resolution(folder.path(""), "iter_3", 1, [&](double share) {
    EXPECT_GE(share, last);
    last = share;
    return true;
  }));
  EXPECT_EQ(last, 1.0);
  for (const double stop_at : {0.0, 0.5}) {
    EXPECT_FALSE(
        block_resolution(folder.path(""), "iter_3", 1, [&](double share) { return share < stop_at; }));
  }
}

TEST_F(Block_resolution, Says_which_file_is_wrong) {
  const auto failure = [&](const std::string& file) -> std::string {
    try {
      static_cast<void>(block_resolution(folder.path(""), file, 1, {}));
    } catch (const std::exception& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_NE(failure("iter_4").find("iter_4"), std::string::npos) << failure("iter_4");
  static_cast<void>(folder.write("occamdat", made::replaced(made::data, "0.1000\n", "0.0000\n")));
  EXPECT_TRUE(failure("iter_3").starts_with("row 1 of the data has an error of 0")) << failure("iter_3");
  static_cast<void>(folder.write("inmodel", "FORMAT:           nothing\n"));
  EXPECT_NE(failure("iter_3").find("inmodel: "), std::string::npos) << failure("iter_3");
}

}  // namespace
}  // namespace Module_occam
