#include "numerics/rhoplus/fit_problem.h"

#include <algorithm>
#include <cmath>

namespace numerics::rhoplus {

bool FitProblem::has_resistivity() const {
  return std::any_of(values.begin(), values.end(), [](const FitValue& value) { return !value.is_phase; });
}

bool has_pole_at_wall(const FitProblem& problem, const SwitchModel& model) {
  return std::isfinite(problem.wall) && !model.state_after(model.switches.size());
}

std::vector<std::complex<double>> log_admittance(const FitProblem& problem, const SwitchModel& model,
                                                 std::span<const double> omega) {
  const Eigen::Map<const Eigen::ArrayXd> w(omega.data(), static_cast<Eigen::Index>(omega.size()));
  const Eigen::ArrayXd w2 = w.square();
  Eigen::ArrayXd real = Eigen::ArrayXd::Ones(w.size());
  Eigen::ArrayXd imaginary = Eigen::ArrayXd::Zero(w.size());
  // A density of 1 from a to b multiplies c by (b + s)(a + 1)/((a + s)(b + 1)). Each product on the way is an
  // admittance too, so none overflows, and one logarithm at the end does for all.
  const auto multiply = [&](const Eigen::ArrayXd& by_real, const Eigen::ArrayXd& by_imaginary) {
    const Eigen::ArrayXd next = real * by_real - imaginary * by_imaginary;
    imaginary = real * by_imaginary + imaginary * by_real;
    real = next;
  };
  const auto stretch = [&](double a, double b) {
    const Eigen::ArrayXd factor = (a + 1.0) / (b + 1.0) / (a * a + w2);
    multiply(factor * (a * b + w2), factor * (a - b) * w);
  };
  const auto endless_stretch = [&](double a) {
    const Eigen::ArrayXd factor = (a + 1.0) / (a * a + w2);
    multiply(factor * a, -factor * w);
  };
  constexpr double of_each = 20.0;  // a division and some products
  problem.limit->spend(of_each * static_cast<double>(omega.size() * (model.switches.size() + 2)));
  bool state = model.starts_at_one;
  double from = 0.0;
  for (const double x : model.switches) {
    const double to = std::exp(x);
    if (state) {
      stretch(from, to);
    }
    from = to;
    state = !state;
  }
  if (state) {
    endless_stretch(from);
  } else if (std::isfinite(problem.wall)) {
    endless_stretch(std::exp(problem.wall));
  }
  std::vector<std::complex<double>> result;
  result.reserve(omega.size());
  for (Eigen::Index k = 0; k < w.size(); ++k) {
    result.emplace_back(model.gamma + 0.5 * std::log(real[k] * real[k] + imaginary[k] * imaginary[k]),
                        std::atan2(imaginary[k], real[k]));
  }
  return result;
}

Eigen::VectorXd weighted_residuals(const FitProblem& problem, const SwitchModel& model) {
  const std::vector<std::complex<double>> ln_c = log_admittance(problem, model, problem.omega);
  Eigen::VectorXd residuals(static_cast<Eigen::Index>(problem.values.size()));
  Eigen::Index row = 0;
  for (const FitValue& value : problem.values) {
    const std::complex<double>& c = ln_c[static_cast<std::size_t>(value.frequency_index)];
    residuals[row++] = ((value.is_phase ? c.imag() : 2.0 * c.real()) - value.target) * value.weight;
  }
  return residuals;
}

Eigen::VectorXd level_column(const FitProblem& problem) {
  Eigen::VectorXd column(static_cast<Eigen::Index>(problem.values.size()));
  Eigen::Index row = 0;
  for (const FitValue& value : problem.values) {
    column[row++] = value.is_phase ? 0.0 : 2.0 * value.weight;
  }
  return column;
}

Eigen::VectorXd settle_level(const FitProblem& problem, SwitchModel& model) {
  const Eigen::VectorXd column = level_column(problem);
  const double length2 = column.squaredNorm();
  Eigen::VectorXd residuals = weighted_residuals(problem, model);
  // The second time takes away what rounding left of the first, which may have been a long way.
  for (int time = 0; time < 2 && length2 > 0.0; ++time) {
    const double shift = -column.dot(residuals) / length2;
    model.gamma += shift;
    residuals += shift * column;
  }
  return residuals;
}

}  // namespace numerics::rhoplus
