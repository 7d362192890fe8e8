#include "numerics/rhoplus/switch_polish.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include <Eigen/Cholesky>

namespace numerics::rhoplus {

namespace {

constexpr int max_steps = 200;
constexpr double longest_step = 1.5;    // in x
constexpr double kept_distance = 0.1;   // of two switches after a step
constexpr double merged = 1e-11;        // in x
constexpr double out_of_reach = 9.0;    // e-folds outside the band
constexpr double settled_step = 1e-13;  // in x
constexpr double max_bend = 0.75;       // of a step, relative to its straight part
constexpr double first_damping = 1e-3;
constexpr double min_damping = 1e-15;
constexpr double max_damping = 1e10;

/// Derivatives of the residuals by the switches, m x n, and the diagonal that the second ones add to J^T J.
struct Derivatives {
  Eigen::MatrixXd first;
  Eigen::MatrixXd second;
  Eigen::VectorXd curvature;
};

Derivatives derivatives(const FitProblem& problem, const SwitchModel& model,
                        const Eigen::VectorXd& residuals) {
  const auto rows = static_cast<Eigen::Index>(problem.values.size());
  const auto count = static_cast<Eigen::Index>(model.switches.size());
  constexpr double of_each = 20.0;  // a division and some products
  const double size = static_cast<double>(rows) * static_cast<double>(count);
  problem.limit->spend(size * (static_cast<double>(count) + of_each));  // with the Hessian made of them
  Derivatives result{Eigen::MatrixXd(rows, count), Eigen::MatrixXd(rows, count), {}};
  const Eigen::Map<const Eigen::ArrayXd> w(problem.omega.data(),
                                           static_cast<Eigen::Index>(problem.omega.size()));
  const Eigen::ArrayXd w2 = w.square();
  for (Eigen::Index i = 0; i < count; ++i) {
    const auto place = static_cast<std::size_t>(i);
    const double lambda = std::exp(model.switches[place]);
    const double share = lambda / (lambda + 1.0);
    const double sign = model.state_after(place) ? 1.0 : -1.0;  // -d_i
    const Eigen::ArrayXd inverse = 1.0 / (lambda * lambda + w2);
    const Eigen::ArrayXd first_real = (sign * share) * (lambda - w2) * inverse;
    const Eigen::ArrayXd first_imaginary = (-sign * lambda) * w * inverse;
    // s/(lambda + s)^2 = i w (lambda - i w)^2/(lambda^2 + w^2)^2
    const Eigen::ArrayXd second_real =
        sign * (2.0 * (lambda * inverse).square() * w2 - share / (lambda + 1.0));
    const Eigen::ArrayXd second_imaginary = (sign * lambda) * w * (lambda * lambda - w2) * inverse.square();
    Eigen::Index row = 0;
    for (const FitValue& value : problem.values) {
      const Eigen::Index k = value.frequency_index;
      result.first(row, i) = (value.is_phase ? first_imaginary[k] : 2.0 * first_real[k]) * value.weight;
      result.second(row, i) = (value.is_phase ? second_imaginary[k] : 2.0 * second_real[k]) * value.weight;
      ++row;
    }
  }
  result.curvature = result.second.transpose() * residuals;
  return result;
}

struct Step {
  Eigen::VectorXd change;  // of the switches, x
  double foreseen = 0.0;   // decrease of chi-squared
};

/// chi-squared about a model to second order. The level is always at its best: only what it can't make up for
/// counts.
class LocalShape {
 public:
  /// @param level unit vector of the level column, or 0
  LocalShape(const FitProblem& problem, const Eigen::VectorXd& level, const SwitchModel& model,
             const Eigen::VectorXd& residuals)
      : limit_(*problem.limit), slopes_(derivatives(problem, model, residuals)) {
    slopes_.first -= level * (level.transpose() * slopes_.first);
    hessian_.setZero(slopes_.first.cols(), slopes_.first.cols());
    hessian_.selfadjointView<Eigen::Lower>().rankUpdate(slopes_.first.transpose());
    hessian_.triangularView<Eigen::StrictlyUpper>() = hessian_.transpose();
    hessian_.diagonal() += slopes_.curvature.cwiseMax(0.0);
    // A switch beyond the reach of the data has next to no curvature.
    constexpr double min_curvature = 1e-30;
    scale_ = hessian_.diagonal()
                 .cwiseMax(min_curvature * hessian_.diagonal().maxCoeff())
                 .cwiseSqrt()
                 .cwiseInverse();
    hessian_ = scale_.asDiagonal() * hessian_ * scale_.asDiagonal();
    scaled_gradient = scale_.cwiseProduct(slopes_.first.transpose() * residuals);
  }

  /// Nothing where rounding doesn't allow one.
  [[nodiscard]] std::optional<Step> step(double damping) const {
    const auto count = static_cast<double>(hessian_.rows());
    limit_.spend(count * (count * count / 3.0 + 2.0 * static_cast<double>(slopes_.first.rows())));
    Eigen::MatrixXd damped = hessian_;
    damped.diagonal().array() += damping;
    const Eigen::LLT<Eigen::MatrixXd> factors(damped);
    if (factors.info() != Eigen::Success) {
      return std::nullopt;
    }
    // Each switch is held back alone: one that is nearly out of reach wants to go very far, and the others
    // have little to do with it.
    const Eigen::VectorXd limits = scale_.cwiseInverse() * longest_step;
    const Eigen::VectorXd straight = factors.solve(-scaled_gradient).cwiseMax(-limits).cwiseMin(limits);
    const Eigen::VectorXd second = slopes_.second * scale_.cwiseProduct(straight).cwiseAbs2();
    Eigen::VectorXd bend = factors.solve(-0.5 * scale_.cwiseProduct(slopes_.first.transpose() * second));
    if (!(bend.norm() < max_bend * straight.norm())) {
      bend.setZero();  // the series can't be trusted
    }
    Step result{scale_.cwiseProduct(straight + bend).cwiseMax(-longest_step).cwiseMin(longest_step),
                -2.0 * scaled_gradient.dot(straight) - straight.dot(hessian_ * straight)};
    if (!result.change.allFinite()) {
      return std::nullopt;
    }
    return result;
  }

  Eigen::VectorXd scaled_gradient;  // half of that of chi-squared, by switches of unit curvature

 private:
  WorkLimit& limit_;
  Derivatives slopes_;
  Eigen::VectorXd scale_;
  Eigen::MatrixXd hessian_;
};

/// The model after a step, in which each distance keeps a tenth of its length: the nearest switches to those
/// that the step leads to. With the distances kept taken off, that is a monotone regression (pool adjacent
/// violators).
SwitchModel moved(const FitProblem& problem, const SwitchModel& model, const Eigen::VectorXd& step) {
  struct Pool {
    double sum = 0.0;
    std::size_t count = 0;
    [[nodiscard]] double mean() const { return sum / static_cast<double>(count); }
  };
  const std::vector<double>& from = model.switches;
  std::vector<double> kept(from.size(), 0.0);
  std::vector<Pool> pools;
  for (std::size_t i = 0; i < from.size(); ++i) {
    kept[i] = i > 0 ? kept[i - 1] + kept_distance * (from[i] - from[i - 1]) : 0.0;
    pools.push_back({from[i] + step[static_cast<Eigen::Index>(i)] - kept[i], 1});
    while (pools.size() > 1 && pools[pools.size() - 2].mean() > pools.back().mean()) {
      const Pool top = pools.back();
      pools.pop_back();
      pools.back().sum += top.sum;
      pools.back().count += top.count;
    }
  }
  const double highest = std::isfinite(problem.wall)
                             ? problem.wall - kept_distance * (problem.wall - from.back()) - kept.back()
                             : problem.wall;
  SwitchModel trial = model;
  std::size_t i = 0;
  for (const Pool& pool : pools) {
    for (std::size_t member = 0; member < pool.count; ++member, ++i) {
      trial.switches[i] = std::min(pool.mean(), highest) + kept[i];
    }
  }
  return trial;
}

/// The model, before the step, without the pairs that would pass each other, and the last one that would pass
/// the wall.
SwitchModel without_met(const FitProblem& problem, const SwitchModel& model, const Eigen::VectorXd& step) {
  SwitchModel fewer = model;
  fewer.switches.clear();
  for (std::size_t i = 0; i < model.switches.size(); ++i) {
    const auto place = static_cast<Eigen::Index>(i);
    const bool last = i + 1 == model.switches.size();
    const double above = last ? problem.wall : model.switches[i + 1] + step[place + 1];
    if (model.switches[i] + step[place] >= above) {
      ++i;
    } else {
      fewer.switches.push_back(model.switches[i]);
    }
  }
  return fewer;
}

class Polish {
 public:
  Polish(const FitProblem& problem, SwitchModel& model, double good_misfit2)
      : problem_(problem), model_(model), good_misfit2_(good_misfit2), level_(level_column(problem)) {
    const double length = level_.norm();
    if (length > 0.0) {
      level_ /= length;
    }
  }

  Eigen::VectorXd run() {
    residuals_ = settle_level(problem_, model_);
    for (int step = 0; step < max_steps && !problem_.limit->is_met(); ++step) {
      remove_merged();
      remove_runaways();
      if (model_.switches.empty() || misfit2() <= good_misfit2_ || !improve()) {
        break;
      }
    }
    return residuals_;
  }

 private:
  [[nodiscard]] double misfit2() const { return residuals_.squaredNorm(); }

  void take(SwitchModel model, Eigen::VectorXd residuals) {
    model_ = std::move(model);
    residuals_ = std::move(residuals);
  }

  /// Takes the trial if its misfit is less than `limit`.
  bool take_below(double limit, SwitchModel trial) {
    Eigen::VectorXd residuals = settle_level(problem_, trial);
    if (!(residuals.squaredNorm() < limit)) {
      return false;
    }
    take(std::move(trial), std::move(residuals));
    return true;
  }

  /// What rounding of ln c may do to chi-squared.
  [[nodiscard]] double noise() const {
    constexpr double rounding = 1e-14;
    double sum = 0.0;
    Eigen::Index row = 0;
    for (const FitValue& value : problem_.values) {
      sum += std::abs(residuals_[row++]) * value.weight;
    }
    return rounding * sum;
  }

  /// Takes the trial if its misfit is less beyond doubt. Where rounding hides the decrease, the gradient,
  /// which can be trusted much further, decides.
  bool take_if_better(SwitchModel trial, const LocalShape& shape) {
    Eigen::VectorXd residuals = settle_level(problem_, trial);
    const double change = residuals.squaredNorm() - misfit2();
    const double doubt = noise();
    if (!(change <= doubt)) {
      return false;
    }
    if (change > -doubt) {
      const LocalShape there(problem_, level_, trial, residuals);
      if (!(there.scaled_gradient.norm() < 0.5 * shape.scaled_gradient.norm())) {
        return false;
      }
    }
    take(std::move(trial), std::move(residuals));
    return true;
  }

  /// One accepted step; false when there is none.
  bool improve() {
    const LocalShape shape(problem_, level_, model_, residuals_);
    const double doubt = noise();
    bool may_lower = true;
    for (; damping_ <= max_damping && !problem_.limit->is_met(); damping_ *= growth_, growth_ *= 2.0) {
      std::optional<Step> step = shape.step(damping_);
      // Where so little is to be had the damping may be what holds the step back from a flat direction.
      while (may_lower && step && step->foreseen < doubt && damping_ > min_damping) {
        damping_ = std::max(min_damping, damping_ * 1e-2);
        step = shape.step(damping_);
      }
      may_lower = false;
      if (!step) {
        continue;
      }
      if (take_without_met(step->change)) {
        return true;
      }
      const double before = misfit2();
      if (take_if_better(moved(problem_, model_, step->change), shape)) {
        adapt_damping((before - misfit2()) / step->foreseen);
        return true;
      }
      if (step->change.cwiseAbs().maxCoeff() < settled_step) {
        return false;
      }
    }
    return false;
  }

  /// Switches that a step would move past each other are about to vanish, and while they are in the way, the
  /// others compensate for the wrong thing. Takes the model without them, or the best step from there.
  bool take_without_met(const Eigen::VectorXd& step) {
    SwitchModel fewer = without_met(problem_, model_, step);
    if (fewer.switches.size() == model_.switches.size()) {
      return false;
    }
    const Eigen::VectorXd residuals = settle_level(problem_, fewer);
    if (residuals.squaredNorm() < misfit2() + noise()) {
      take(std::move(fewer), residuals);
      return true;
    }
    if (fewer.switches.empty()) {
      return false;
    }
    const std::optional<Step> next = LocalShape(problem_, level_, fewer, residuals).step(damping_);
    return next && take_below(misfit2(), moved(problem_, fewer, next->change));
  }

  /// The better the quadratic model foretold the decrease, the less damping: Nielsen (1999), report
  /// IMM-REP-1999-05, Technical University of Denmark.
  void adapt_damping(double gain) {
    const double miss = 2.0 * std::clamp(gain, 0.0, 1.0) - 1.0;
    damping_ = std::max(min_damping, damping_ * std::max(0.1, 1.0 - miss * miss * miss));
    growth_ = 2.0;
  }

  void remove_merged() {
    SwitchModel fewer = model_;
    fewer.switches.clear();
    for (std::size_t i = 0; i < model_.switches.size(); ++i) {
      const bool last = i + 1 == model_.switches.size();
      if ((last ? problem_.wall : model_.switches[i + 1]) - model_.switches[i] < merged) {
        ++i;
      } else {
        fewer.switches.push_back(model_.switches[i]);
      }
    }
    if (fewer.switches.size() < model_.switches.size()) {
      Eigen::VectorXd residuals = settle_level(problem_, fewer);
      take(std::move(fewer), std::move(residuals));
    }
  }

  /// Drops the outermost switches beyond the reach of the data while that costs nothing.
  void remove_runaways() {
    const double low = std::log(problem_.omega.front()) - out_of_reach;
    const double high = std::log(problem_.omega.back()) + out_of_reach;
    bool dropped = true;
    while (dropped && !model_.switches.empty()) {
      SwitchModel fewer = model_;
      if (model_.switches.front() < low) {
        fewer.switches.erase(fewer.switches.begin());
        fewer.starts_at_one = !fewer.starts_at_one;
      } else if (model_.switches.back() > high) {
        fewer.switches.pop_back();
      } else {
        return;
      }
      dropped =
          take_below(misfit2() + std::max(noise(), std::numeric_limits<double>::min()), std::move(fewer));
    }
  }

  const FitProblem& problem_;
  SwitchModel& model_;
  const double good_misfit2_;
  Eigen::VectorXd level_;
  Eigen::VectorXd residuals_;
  double damping_ = first_damping;
  double growth_ = 2.0;
};

}  // namespace

Eigen::VectorXd polish_switches(const FitProblem& problem, SwitchModel& model, double good_misfit2) {
  return Polish(problem, model, good_misfit2).run();
}

}  // namespace numerics::rhoplus
