// trials.h: the models that one iteration tries, each with its misfit.
#pragma once
#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "numerics/occam_inversion/linear_models.h"
#include "numerics/occam_inversion/roughness.h"

namespace numerics::occam_inversion {

/// How a model's response fits.
struct Fit {
  std::vector<double> modelled;  // of each datum, in its unit
  double misfit = 0.0;           // that the search goes by
  double rms = 0.0;              // root mean square of residuals over errors; the misfit unless it is robust
};

struct Trial {
  double log10_multiplier = 0.0;
  double share = 1.0;         // of the full step that was taken
  std::vector<double> model;  // log10 ohm-m; empty if there is none
  Fit fit;
  double roughness = std::numeric_limits<double>::infinity();

  /// That of no model where there is none, or its response is not a number.
  [[nodiscard]] double misfit() const {
    return !model.empty() && fit.misfit < no_model ? fit.misfit : no_model;
  }
  static constexpr double no_model = 1e10;
};

/// What models may be.
struct ModelRules {
  std::optional<std::pair<double, double>> limits;  // log10 ohm-m
  double step = 0.0;                                // models are multiples of it; 0: any value
  /// That they hold for, from the first: static shifts, which stand behind the blocks, are no resistivities.
  std::size_t parameters = std::numeric_limits<std::size_t>::max();

  void apply(std::vector<double>& model) const;
};

/// Thrown out of a search when the user stops it.
struct Stopped {};

/// The response of a model; throws Stopped.
using Respond = std::function<Fit(std::span<const double> model)>;

/// Tries models of a linearised problem, each once. The model of a multiplier is kept for shorter steps.
class Trials {
 public:
  Trials(const LinearModels& models, const Roughness& roughness, std::vector<double> start, ModelRules rules,
         Respond respond, std::function<void(const Trial&)> tell = {})
      : models_(models),
        roughness_(roughness),
        start_(std::move(start)),
        rules_(rules),
        respond_(std::move(respond)),
        tell_(std::move(tell)) {}

  /// @param share  of the step from the start to the model of the multiplier, 1 for all of it
  const Trial& at(double log10_multiplier, double share);
  /// Of the model of such a trial, without its response; infinite if there is none.
  [[nodiscard]] double roughness_at(double log10_multiplier, double share);

  /// Responses computed so far.
  [[nodiscard]] std::size_t count() const { return count_; }
  /// Of all trials so far the one with the least misfit.
  [[nodiscard]] const Trial* best() const { return best_; }
  /// Root mean square of the change from the start.
  [[nodiscard]] double step_of(const Trial& trial) const;

 private:
  const std::optional<std::vector<double>>& full_step_to(double log10_multiplier);
  std::vector<double> model_of(double log10_multiplier, double share);

  const LinearModels& models_;
  const Roughness& roughness_;
  std::vector<double> start_;
  ModelRules rules_;
  Respond respond_;
  std::function<void(const Trial&)> tell_;
  std::map<double, std::optional<std::vector<double>>> model_of_multiplier_;
  std::map<std::pair<double, double>, Trial> trials_;
  const Trial* best_ = nullptr;
  std::size_t count_ = 0;
};

}  // namespace numerics::occam_inversion
