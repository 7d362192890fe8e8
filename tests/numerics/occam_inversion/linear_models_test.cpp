#include "numerics/occam_inversion/linear_models.h"

#include <cmath>
#include <random>

#include <Eigen/Dense>
#include <gtest/gtest.h>

using namespace numerics::occam_inversion;

namespace {

// A row of blocks side by side, and free parameters behind them.
std::vector<Block> row_of_blocks(std::size_t count) {
  std::vector<Block> blocks(count);
  for (std::size_t place = 0; place < count; ++place) {
    blocks[place].left = static_cast<int>(place);
    blocks[place].right = static_cast<int>(place) + 1;
    blocks[place].bottom = 1;
    blocks[place].parameter = place;
  }
  return blocks;
}

LinearProblem random_problem(std::size_t data, std::size_t parameters) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  LinearProblem problem;
  for (std::size_t i = 0; i < data * parameters; ++i) {
    problem.sensitivities.push_back(uniform(random));
  }
  for (std::size_t i = 0; i < data; ++i) {
    problem.data.push_back(3.0 * uniform(random));
  }
  return problem;
}

// The normal equations with a dense R, by Eigen's most careful solver.
std::vector<double> reference(const LinearProblem& problem, const Roughness& roughness, double multiplier) {
  const auto n = static_cast<Eigen::Index>(roughness.parameters());
  const auto rows = static_cast<Eigen::Index>(problem.data.size());
  using RowMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
  const Eigen::MatrixXd j = Eigen::Map<const RowMatrix>(problem.sensitivities.data(), rows, n);
  const Eigen::VectorXd d = Eigen::Map<const Eigen::VectorXd>(problem.data.data(), rows);
  Eigen::MatrixXd system = j.transpose() * j;
  Eigen::VectorXd side = j.transpose() * d;
  const auto at = [](std::size_t parameter) { return static_cast<Eigen::Index>(parameter); };
  for (const Link& link : roughness.links()) {
    Eigen::VectorXd difference = Eigen::VectorXd::Zero(n);
    difference[at(link.first)] = -link.weight;
    difference[at(link.second)] = link.weight;
    system += multiplier * difference * difference.transpose();
  }
  for (const Prejudice& prejudice : roughness.prejudices()) {
    const double square = multiplier * prejudice.weight * prejudice.weight;
    system(at(prejudice.parameter), at(prejudice.parameter)) += square;
    side[at(prejudice.parameter)] += square * prejudice.value;
  }
  const Eigen::VectorXd model = system.fullPivLu().solve(side);
  return {model.begin(), model.end()};
}

void expect_same(const std::vector<double>& a, const std::vector<double>& b, const std::string& what) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i], b[i], 1e-8 * (1.0 + std::abs(b[i]))) << what << ", parameter " << i;
  }
}

TEST(Linear_models, Both_spaces_solve_the_normal_equations) {
  constexpr std::size_t blocks = 130;      // more than one panel
  constexpr std::size_t parameters = 132;  // two static shifts behind them
  // A cut link makes two groups; a prejudice holds one of them, and a shift.
  const RoughnessRules rules{.type = 1, .diagonals = false, .by_hand = {{60, 61, 0.0}, {3, 4, 2.5}}};
  const std::vector<std::vector<Prejudice>> prejudices{{}, {{100, 2.0, 0.7}, {131, 0.5, 1.0}}};
  for (const std::size_t data : {20U, 135U}) {
    const LinearProblem problem = random_problem(data, parameters);
    for (const std::vector<Prejudice>& given : prejudices) {
      const Roughness roughness(row_of_blocks(blocks), parameters, rules, given);
      const auto in_model = linear_models(problem, roughness, Space::model, 1);
      const auto in_data = linear_models(problem, roughness, Space::data, 2);
      for (const double x : {-1.0, 0.5, 3.0}) {
        const std::vector<double> expected = reference(problem, roughness, std::pow(10.0, x));
        const std::string what = std::to_string(data) + " data, multiplier 1e" + std::to_string(x);
        expect_same(in_model->at(x).value(), expected, what);
        expect_same(in_data->at(x).value(), expected, what + ", data space");
      }
      EXPECT_EQ(linear_models(problem, roughness, Space::model, 3)->at(0.5), in_model->at(0.5));
      EXPECT_EQ(linear_models(problem, roughness, Space::data, 1)->at(0.5), in_data->at(0.5));
    }
  }
}

TEST(Linear_models, A_system_that_is_not_definite_has_no_model) {
  const Roughness roughness(row_of_blocks(3), 3, {});
  const LinearProblem nothing{std::vector<double>(3, 0.0), {1.0}};  // no datum sees a constant
  EXPECT_FALSE(linear_models(nothing, roughness, Space::model)->at(0.0));
}

}  // namespace
