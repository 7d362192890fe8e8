#include "rhoplus/mask_proposal.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace Module_rhoplus {

using Module_averaged_data::Component;
using Module_averaged_data::CurvePoints;
using numerics::impedance::Dimensionality;

namespace {

/// Where a station's tensor is three-dimensional.
class ThreeDimensional {
 public:
  ThreeDimensional(const Module_tensor::StationTensor& tensor,
                   const numerics::impedance::DimensionalityLimits& limits)
      : points_(&tensor.points), limits_(&limits) {}

  /// False as well where there is no tensor to tell.
  [[nodiscard]] bool at(float frequency) const {
    const auto found = std::ranges::find(*points_, double{frequency}, &Module_tensor::TensorPoint::frequency);
    if (found == points_->end()) {
      return false;
    }
    const auto phase_tensor = numerics::impedance::phase_tensor(found->tensor);
    return phase_tensor && dimensionality(*phase_tensor, *limits_) == Dimensionality::three;
  }

 private:
  const std::vector<Module_tensor::TensorPoint>* points_;
  const numerics::impedance::DimensionalityLimits* limits_;
};

bool is_beyond(double residual, double errors) { return std::abs(residual) > errors; }  // not where it is NaN

void propose_curve(const CurveConsistency& curve, const ThreeDimensional& three_dimensional,
                   const ProposalRules& rules, ProposedPoint place, MaskProposal& proposal) {
  for (place.point = 0; place.point < curve.points.size(); ++place.point) {
    const PointResidual& residual = curve.points[place.point];
    place.frequency = residual.frequency;
    place.resistivity = is_beyond(residual.resistivity, rules.errors);
    place.phase = is_beyond(residual.phase, rules.errors);
    const std::size_t values = (place.resistivity ? 1U : 0U) + (place.phase ? 1U : 0U);
    if (values == 0) {
      continue;
    }
    if (!rules.three_dimensional && three_dimensional.at(residual.frequency)) {
      proposal.left_three_dimensional += values;
      continue;
    }
    proposal.values[place.mode_index] += values;
    proposal.points.push_back(place);
  }
}

}  // namespace

MaskProposal mask_proposal(const Module_tensor::LineTensors& line, const LineConsistency& consistency,
                           const ProposalRules& rules) {
  MaskProposal proposal;
  for (std::size_t station = 0; station < consistency.stations.size(); ++station) {
    const ThreeDimensional three_dimensional(line.stations[station], rules.limits);
    for (std::size_t mode = 0; mode < mode_count; ++mode) {
      propose_curve(consistency.stations[station].modes[mode], three_dimensional, rules,
                    {.station_index = station, .mode_index = mode}, proposal);
    }
  }
  return proposal;
}

std::string proposal_text(const MaskProposal& proposal) {
  std::string text;
  std::size_t all = 0;
  for (std::size_t mode = 0; mode < mode_count; ++mode) {
    const auto type = static_cast<std::size_t>(consistency_types[mode]);
    text += (text.empty() ? "" : " and ") + std::to_string(proposal.values[mode]) + " values of " +
            std::string(Module_tensor::curve_types[type]);
    all += proposal.values[mode];
  }
  text += " lie beyond the limit";
  if (proposal.left_three_dimensional > 0) {
    text += "; " + std::to_string(proposal.left_three_dimensional) +
            " more are left where the tensor is three-dimensional";
  }
  return text + (all > 0 ? ". The fit without them may leave further points beyond it." : ".");
}

std::vector<CurvePoints> points_to_mask(const LineConsistency& consistency, const MaskProposal& proposal) {
  std::vector<CurvePoints> curves;
  for (const ProposedPoint& point : proposal.points) {
    const std::int32_t ID = consistency.stations[point.station_index].modes[point.mode_index].ID;
    if (curves.empty() || curves.back().ID != ID) {
      curves.push_back({ID, {}});
    }
    if (point.resistivity) {
      curves.back().points.push_back({point.frequency, Component::resistivity, false});
    }
    if (point.phase) {
      curves.back().points.push_back({point.frequency, Component::phase, false});
    }
  }
  return curves;
}

}  // namespace Module_rhoplus
