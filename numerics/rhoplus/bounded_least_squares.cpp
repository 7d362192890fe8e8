#include "numerics/rhoplus/bounded_least_squares.h"

#include <algorithm>
#include <cmath>

#include "numerics/rhoplus/column_factors.h"

namespace numerics::rhoplus {

namespace {

class ActiveSet {
 public:
  ActiveSet(const Eigen::MatrixXd& columns, const Eigen::VectorXd& target, const Eigen::VectorXd& start,
            const BoundedFitLimits& limits)
      : columns_(columns),
        target_(target),
        limits_(limits),
        lengths_(columns.colwise().norm()),
        x_(start),
        residual_(target - columns * start),
        factors_(columns.rows(), std::min(columns.rows(), columns.cols())),
        is_free_(static_cast<std::size_t>(columns.cols()), false),
        is_barred_(static_cast<std::size_t>(columns.cols()), false) {}

  BoundedFit run() {
    int pass = 0;
    while (pass < limits_.passes && !close_enough()) {
      ++pass;
      const Eigen::Index candidate = most_against_bound();
      if (candidate < 0) {
        break;
      }
      const double before = residual_.squaredNorm();
      if (!release(candidate)) {
        bar(candidate);
        continue;
      }
      solve_free();
      if (residual_.squaredNorm() < before) {
        std::fill(is_barred_.begin(), is_barred_.end(), false);
      } else {
        bar(candidate);
      }
    }
    return {x_, target_ - columns_ * x_, pass};
  }

 private:
  /// Also brings the gradient up to date.
  bool close_enough() {
    const double misfit2 = residual_.squaredNorm();
    if (misfit2 <= limits_.misfit2) {
      return true;
    }
    gradient_.noalias() = columns_.transpose() * residual_;
    double gap = 0.0;
    for (Eigen::Index j = 0; j < x_.size(); ++j) {
      gap += std::max(gradient_[j], 0.0) * (1.0 - x_[j]) + std::max(-gradient_[j], 0.0) * x_[j];
    }
    return 2.0 * gap <= limits_.relative_gap * misfit2;
  }

  [[nodiscard]] Eigen::Index most_against_bound() const {
    Eigen::Index best = -1;
    double best_pull = 0.0;
    for (Eigen::Index j = 0; j < x_.size(); ++j) {
      const auto place = static_cast<std::size_t>(j);
      if (is_free_[place] || is_barred_[place]) {
        continue;
      }
      const double pull = (x_[j] > 0.5 ? -gradient_[j] : gradient_[j]) / lengths_[j];
      if (pull > best_pull) {
        best_pull = pull;
        best = j;
      }
    }
    return best;
  }

  /// False when the column depends on the free ones, or would leave for the far side of its bound, which only
  /// rounding can bring about.
  bool release(Eigen::Index j) {
    if (!factors_.add(columns_.col(j))) {
      return false;
    }
    const Eigen::VectorXd step = factors_.coefficients(factors_.components(residual_));
    const double change = step[step.size() - 1];
    if (x_[j] > 0.5 ? change >= 0.0 : change <= 0.0) {
      factors_.remove(factors_.size() - 1);
      return false;
    }
    free_.push_back(j);
    is_free_[static_cast<std::size_t>(j)] = true;
    return true;
  }

  void solve_free() {
    while (!free_.empty()) {
      const Eigen::VectorXd components = factors_.components(residual_);
      const Eigen::VectorXd step = factors_.coefficients(components);
      double fraction = 1.0;
      Eigen::Index first_met = -1;
      for (Eigen::Index i = 0; i < step.size(); ++i) {
        const double from = x_[free_[static_cast<std::size_t>(i)]];
        const double room = step[i] > 0.0 ? 1.0 - from : from;
        if (room < fraction * std::abs(step[i])) {
          fraction = room / std::abs(step[i]);
          first_met = i;
        }
      }
      for (Eigen::Index i = 0; i < step.size(); ++i) {
        x_[free_[static_cast<std::size_t>(i)]] += fraction * step[i];
      }
      residual_ -= fraction * factors_.combination(components);
      if (first_met < 0) {
        return;
      }
      fix(first_met, step[first_met] > 0.0 ? 1.0 : 0.0);
    }
  }

  void fix(Eigen::Index position, double bound) {
    const Eigen::Index j = free_[static_cast<std::size_t>(position)];
    x_[j] = bound;
    is_free_[static_cast<std::size_t>(j)] = false;
    free_.erase(free_.begin() + position);
    factors_.remove(position);
  }

  /// Until something else has lowered the misfit.
  void bar(Eigen::Index j) { is_barred_[static_cast<std::size_t>(j)] = true; }

  const Eigen::MatrixXd& columns_;
  const Eigen::VectorXd& target_;
  const BoundedFitLimits limits_;
  const Eigen::VectorXd lengths_;
  Eigen::VectorXd x_;
  Eigen::VectorXd residual_;
  Eigen::VectorXd gradient_;
  ColumnFactors factors_;
  std::vector<Eigen::Index> free_;  // in the order of the factors
  std::vector<bool> is_free_;
  std::vector<bool> is_barred_;
};

}  // namespace

BoundedFit bounded_least_squares(const Eigen::MatrixXd& columns, const Eigen::VectorXd& target,
                                 const Eigen::VectorXd& start, const BoundedFitLimits& limits) {
  return ActiveSet(columns, target, start, limits).run();
}

}  // namespace numerics::rhoplus
