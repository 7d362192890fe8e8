#include "numerics/occam_inversion/linear_models.h"

#include <cmath>
#include <random>
#include <stdexcept>

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

using Matrix = Eigen::MatrixXd;
using Vector = Eigen::VectorXd;

Eigen::Index at(std::size_t parameter) { return static_cast<Eigen::Index>(parameter); }

// The normal equations with dense matrices.
struct NormalEquations {
  NormalEquations(const LinearProblem& problem, const Roughness& roughness, double multiplier) {
    using RowMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    const Matrix j = Eigen::Map<const RowMatrix>(problem.sensitivities.data(), at(problem.data.size()),
                                                 at(roughness.parameters()));
    square = j.transpose() * j;
    system = square;
    side = j.transpose() * Eigen::Map<const Vector>(problem.data.data(), at(problem.data.size()));
    for (const Link& link : roughness.links()) {
      const double weight = multiplier * link.weight * link.weight;
      system(at(link.first), at(link.first)) += weight;
      system(at(link.second), at(link.second)) += weight;
      system(at(link.first), at(link.second)) -= weight;
      system(at(link.second), at(link.first)) -= weight;
    }
    for (const Prejudice& prejudice : roughness.prejudices()) {
      const double weight = multiplier * prejudice.weight * prejudice.weight;
      system(at(prejudice.parameter), at(prejudice.parameter)) += weight;
      side[at(prejudice.parameter)] += weight * prejudice.value;
    }
  }
  [[nodiscard]] std::vector<double> model() const {
    const Vector model = system.partialPivLu().solve(side);
    return {model.begin(), model.end()};
  }
  [[nodiscard]] std::vector<double> standard_errors() const {
    const Matrix inverse = system.inverse();
    const Matrix resolution = inverse * square;
    const Vector errors = resolution.cwiseProduct(inverse).rowwise().sum().cwiseSqrt();
    return {errors.begin(), errors.end()};
  }

  Matrix square;
  Matrix system;
  Vector side;
};

void expect_same(const std::vector<double>& a, const std::vector<double>& b, const std::string& what) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i], b[i], 1e-8 * (1.0 + std::abs(b[i]))) << what << ", parameter " << i;
  }
}

TEST(Linear_models, Both_spaces_solve_the_normal_equations) {
  struct Case {
    const char* name;
    std::size_t data;
    std::size_t blocks;
    bool with_prejudices;
  };
  // More than a panel of parameters, then of data.
  for (const Case& c : {Case{"few data", 20, 130, false}, Case{"many data", 135, 38, false},
                        Case{"with prejudices", 135, 38, true}, Case{"few with prejudices", 20, 38, true}}) {
    SCOPED_TRACE(c.name);
    const std::size_t parameters = c.blocks + 2;  // two static shifts behind them
    // A cut link makes two groups; a prejudice holds one of them, and a shift.
    const std::size_t half = c.blocks / 2;
    const RoughnessRules rules{.type = 1, .diagonals = false, .by_hand = {{half, half + 1, 0}, {3, 4, 2.5}}};
    std::vector<Prejudice> prejudices;
    if (c.with_prejudices) {
      prejudices = {{half + 5, 2.0, 0.7}, {parameters - 1, 0.5, 1.0}};
    }
    const Roughness roughness(row_of_blocks(c.blocks), parameters, rules, prejudices);
    const LinearProblem problem = random_problem(c.data, parameters);
    const auto in_model = linear_models(problem, roughness, Space::model, 1);
    const auto in_data = linear_models(problem, roughness, Space::data, 2);
    for (const double x : {-1.0, 3.0}) {
      const NormalEquations equations(problem, roughness, std::pow(10.0, x));
      const std::string what = "multiplier 1e" + std::to_string(x);
      const std::vector<double> model = equations.model();
      expect_same(in_model->at(x).value(), model, what);
      expect_same(in_data->at(x).value(), model, what + ", data space");
      const std::vector<double> errors = equations.standard_errors();
      expect_same(in_model->standard_errors(x, {}).value(), errors, what + ", errors");
      expect_same(in_data->standard_errors(x, {}).value(), errors, what + ", errors in data space");
    }
    EXPECT_EQ(linear_models(problem, roughness, Space::model, 3)->at(0.5), in_model->at(0.5));
    EXPECT_EQ(linear_models(problem, roughness, Space::data, 1)->at(0.5), in_data->at(0.5));
  }
}

TEST(Linear_models, A_system_that_is_not_definite_has_no_model) {
  const Roughness roughness(row_of_blocks(3), 3, {});
  const LinearProblem nothing{std::vector<double>(3, 0.0), {1.0}};  // no datum sees a constant
  const auto models = linear_models(nothing, roughness, Space::model);
  EXPECT_FALSE(models->at(0.0));
  EXPECT_THROW((void)models->standard_errors(0.0, {}), std::runtime_error);
}

}  // namespace
