#include "numerics/occam_inversion/trials.h"

#include <algorithm>
#include <cmath>

namespace numerics::occam_inversion {

void ModelRules::apply(std::vector<double>& model) const {
  for (double& value : std::span(model).first(std::min(parameters, model.size()))) {
    if (step > 0.0) {
      value = std::round(value / step) * step;
    }
    if (limits) {
      value = std::clamp(value, limits->first, limits->second);
    }
  }
}

const std::optional<std::vector<double>>& Trials::full_step_to(double log10_multiplier) {
  const auto known = model_of_multiplier_.find(log10_multiplier);
  return known != model_of_multiplier_.end()
             ? known->second
             : model_of_multiplier_.emplace(log10_multiplier, models_.at(log10_multiplier)).first->second;
}

// Empty if there is none.
std::vector<double> Trials::model_of(double log10_multiplier, double share) {
  const auto& target = full_step_to(log10_multiplier);
  if (!target) {
    return {};
  }
  std::vector<double> model = start_;
  for (std::size_t p = 0; p < model.size(); ++p) {
    model[p] += share * ((*target)[p] - start_[p]);
  }
  rules_.apply(model);
  return model;
}

double Trials::roughness_at(double log10_multiplier, double share) {
  const std::vector<double> model = model_of(log10_multiplier, share);
  return model.empty() ? std::numeric_limits<double>::infinity() : roughness_.of(model);
}

const Trial& Trials::at(double log10_multiplier, double share) {
  const std::pair key(log10_multiplier, share);
  if (const auto known = trials_.find(key); known != trials_.end()) {
    return known->second;
  }
  Trial trial;
  trial.log10_multiplier = log10_multiplier;
  trial.share = share;
  trial.model = model_of(log10_multiplier, share);
  if (!trial.model.empty()) {
    ++count_;
    trial.fit = respond_(trial.model);
    trial.roughness = roughness_.of(trial.model);
  }
  const Trial& kept = trials_.emplace(key, std::move(trial)).first->second;
  if (best_ == nullptr || kept.misfit() < best_->misfit()) {
    best_ = &kept;
  }
  if (tell_) {
    tell_(kept);
  }
  return kept;
}

double Trials::step_of(const Trial& trial) const {
  double sum = 0.0;
  for (std::size_t p = 0; p < start_.size(); ++p) {
    const double change = trial.model[p] - start_[p];
    sum += change * change;
  }
  return start_.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(start_.size()));
}

}  // namespace numerics::occam_inversion
