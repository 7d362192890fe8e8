#include "numerics/occam_inversion/inversion.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace numerics::occam_inversion {

namespace {

constexpr double huber_limit = 1.5;  // errors: Huber (1964), Ann. Math. Stat. 35, 73-101
// A roughness, or a misfit above the target, that falls by less twice in a row falls no more.
constexpr double hardly_smoother = 1e-3;
constexpr double hardly_nearer = 1e-4;
constexpr double no_step = 1e-3;        // decades
constexpr double most_decades = 100.0;  // beyond, squares of differences lose all meaning

double residual(const Problem& problem, std::span<const double> modelled, std::size_t row) {
  return (problem.data[row] - modelled[row]) / std::abs(problem.errors[row]);
}

/// The root of the mean of Huber's function, that of the squares below its limit.
double robust_misfit(const Problem& problem, std::span<const double> modelled) {
  double sum = 0.0;
  for (std::size_t row = 0; row < modelled.size(); ++row) {
    const double r = std::abs(residual(problem, modelled, row));
    sum += r <= huber_limit ? r * r : 2.0 * huber_limit * r - huber_limit * huber_limit;
  }
  return modelled.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(modelled.size()));
}

Fit fit_of(const Problem& problem, std::vector<double> modelled, bool robust) {
  Fit fit;
  fit.rms = root_mean_square(problem, modelled);
  fit.misfit = robust ? robust_misfit(problem, modelled) : fit.rms;
  fit.modelled = std::move(modelled);
  return fit;
}

class Inversion {
 public:
  Inversion(const Problem& problem, const Roughness& roughness, const Settings& settings,
            const Listener& listener, State start)
      : problem_(problem), roughness_(roughness), settings_(settings), listener_(listener) {
    last_.state = std::move(start);
  }

  Outcome run() {
    try {
      begin();
      tell();
      if (last_.state.target_reached && is_perfectly_smooth()) {
        return {Ending::perfectly_smooth, last_};
      }
      const int last_number = last_.state.iteration + settings_.most_iterations;
      while (last_.state.iteration < last_number) {
        if (const auto ending = iterate()) {
          return {*ending, last_};
        }
        tell();
        if (const auto ending = is_finished()) {
          return {*ending, last_};
        }
      }
      return {Ending::iterations_done, last_};
    } catch (const Stopped&) {
      return {Ending::stopped, last_};
    }
  }

 private:
  void tell() const {
    if (listener_.iteration) {
      listener_.iteration(last_);
    }
  }

  void begin() {
    Fit fit = respond(last_.state.model);
    last_.rms = fit.rms;
    last_.modelled = std::move(fit.modelled);
    last_.state.roughness = roughness_.of(last_.state.model);
    last_.misfit = fit.misfit;
    if (last_.state.iteration == 0) {
      last_.state.log10_multiplier = State().log10_multiplier;
      last_.state.target_reached = last_.misfit <= settings_.target_rms;
    }
    // A file has fewer digits than the model had; a target that was lowered since is to be reached again.
    last_.state.target_reached = last_.state.target_reached && fits();
    last_.model_log10_multiplier = last_.state.log10_multiplier;
  }

  Fit respond(std::span<const double> model) const {
    return fit_of(problem_, problem_.respond(model, Derivatives::no).values, settings_.robust);
  }

  // @return why there is no next model, if there is none
  std::optional<Ending> iterate() {
    const auto models =
        linear_models(linearise(problem_, last_.state.model, settings_.robust), roughness_,
                      cheaper_space(problem_.data.size(), last_.state.model.size()), settings_.threads);
    Trials trials(
        *models, roughness_, last_.state.model, settings_.rules,
        [this](std::span<const double> model) { return respond(model); }, listener_.trial);
    const SearchStart start{std::clamp(last_.state.log10_multiplier, lowest_multiplier, highest_multiplier),
                            last_.misfit,
                            settings_.target_rms,
                            last_.state.target_reached,
                            last_.state.roughness,
                            settings_.most_cuts};
    const SearchEnd end =
        settings_.search == Search::better ? search_better(trials, start) : search_classic(trials, start);
    if (end.accepted == nullptr || end.accepted->model.empty()) {  // no multiplier gave a model
      return start.target_reached ? Ending::smooth_and_fitting : Ending::no_better_fit;
    }
    const Trial& accepted = *end.accepted;
    const Level before = level();
    last_ = {{last_.state.iteration + 1, accepted.model, end.log10_multiplier, accepted.roughness,
              end.target_reached, last_.state.small_gains},
             accepted.fit.rms,
             accepted.misfit(),
             accepted.log10_multiplier,
             accepted.fit.modelled,
             trials.step_of(accepted),
             trials.count()};
    last_.state.small_gains = is_small_gain(before, level()) ? last_.state.small_gains + 1 : 0;
    return std::nullopt;
  }

  [[nodiscard]] Level level() const {
    return {last_.misfit, last_.state.roughness, last_.state.target_reached};
  }

  [[nodiscard]] bool fits() const { return last_.misfit <= near_target * settings_.target_rms; }
  [[nodiscard]] bool is_perfectly_smooth() const {
    return fits() && last_.state.roughness < uniform_roughness;
  }

  [[nodiscard]] std::optional<Ending> is_finished() const {
    if (is_perfectly_smooth()) {
      return Ending::perfectly_smooth;
    }
    // The classic search lets the roughness rise again, and goes on.
    const bool has_settled = settings_.search == Search::better && last_.state.small_gains >= 2;
    if (fits() && (last_.step < no_step || has_settled)) {
      return Ending::smooth_and_fitting;
    }
    return has_settled ? std::optional(Ending::no_better_fit) : std::nullopt;
  }

  const Problem& problem_;
  const Roughness& roughness_;
  const Settings& settings_;
  const Listener& listener_;
  Iteration last_;
};

}  // namespace

void require_soluble(const Problem& problem, const Roughness& roughness, std::span<const double> model) {
  for (std::size_t row = 0; row < problem.data.size(); ++row) {
    const std::string name = "row " + std::to_string(row + 1) + " of the data ";
    if (!std::isfinite(problem.data[row]) || !std::isfinite(problem.errors[row])) {
      throw std::invalid_argument(name + "is not a number");
    }
    if (problem.errors[row] == 0.0) {
      throw std::invalid_argument(name + "has an error of 0");
    }
  }
  if (problem.data.empty()) {
    throw std::invalid_argument("there are no data");
  }
  if (model.size() != roughness.parameters()) {
    throw std::invalid_argument("the start has " + std::to_string(model.size()) + " parameters, the model " +
                                std::to_string(roughness.parameters()));
  }
  for (std::size_t p = 0; p < model.size(); ++p) {
    if (!std::isfinite(model[p])) {
      throw std::invalid_argument("parameter " + std::to_string(p + 1) + " of the start is not a number");
    }
    if (std::abs(model[p]) > most_decades) {
      throw std::invalid_argument("parameter " + std::to_string(p + 1) +
                                  " of the start is no logarithm of a resistivity");
    }
  }
}

// Rows over their errors, the data such that the model solves for itself.
LinearProblem linearise(const Problem& problem, std::span<const double> model, bool robust) {
  Modelled modelled = problem.respond(model, Derivatives::yes);
  LinearProblem linear{std::move(modelled.sensitivities), std::vector<double>(problem.data.size())};
  const std::size_t n = model.size();
  for (std::size_t row = 0; row < linear.data.size(); ++row) {
    const double r = std::abs(residual(problem, modelled.values, row));
    const double weight =
        (robust && r > huber_limit ? std::sqrt(huber_limit / r) : 1.0) / std::abs(problem.errors[row]);
    const std::span<double> derivatives(linear.sensitivities.data() + row * n, n);
    double through_model = 0.0;
    for (std::size_t p = 0; p < n; ++p) {
      derivatives[p] *= weight;
      through_model += derivatives[p] * model[p];
    }
    linear.data[row] = weight * (problem.data[row] - modelled.values[row]) + through_model;
  }
  return linear;
}

bool is_small_gain(const Level& before, const Level& after) {
  const double fall =
      before.target_reached ? 1.0 - after.roughness / before.roughness : 1.0 - after.misfit / before.misfit;
  return fall < (before.target_reached ? hardly_smoother : hardly_nearer);
}

double root_mean_square(const Problem& problem, std::span<const double> modelled) {
  double sum = 0.0;
  for (std::size_t row = 0; row < modelled.size(); ++row) {
    const double r = residual(problem, modelled, row);
    sum += r * r;
  }
  return modelled.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(modelled.size()));
}

Outcome invert(const Problem& problem, const Roughness& roughness, const Settings& settings, State start,
               const Listener& listener) {
  require_soluble(problem, roughness, start.model);
  return Inversion(problem, roughness, settings, listener, std::move(start)).run();
}

}  // namespace numerics::occam_inversion
