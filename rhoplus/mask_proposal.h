// mask_proposal.h: which points of a line to mask, as no layered earth explains them. Nothing is masked here:
// a proposal is shown first, and carried out by set_points.
#pragma once
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "numerics/impedance/phase_tensor.h"
#include "reduction/edits/set_points.h"
#include "rhoplus/line_consistency.h"

namespace Module_rhoplus {

struct ProposalRules {
  double errors = 3.0;             // a residual beyond this many errors is proposed
  bool three_dimensional = false;  // also where the tensor is three-dimensional
  numerics::impedance::DimensionalityLimits limits;
};

struct ProposedPoint {
  std::size_t station_index = 0;  // in the line
  std::size_t mode_index = 0;     // in consistency_types
  std::size_t point = 0;          // in the merged curve
  float frequency = 0.0F;         // Hz
  bool resistivity = false;       // what is to be masked
  bool phase = false;
};

struct MaskProposal {
  std::vector<ProposedPoint> points;             // by station, mode and frequency
  std::array<std::size_t, mode_count> values{};  // resistivities and phases to be masked, by mode
  std::size_t left_three_dimensional = 0;        // values beyond the limit that are left alone

  [[nodiscard]] bool empty() const { return points.empty(); }
};

/// The points whose residual is beyond the limit: that of resistivity masks the resistivity, that of phase
/// the phase. This is one pass: the fit without them is another one, whose residuals may exceed the limit at
/// further points.
MaskProposal mask_proposal(const Module_tensor::LineTensors& line, const LineConsistency& consistency,
                           const ProposalRules& rules);

/// "12 values of ExHy and 3 of EyHx; 5 more are left where the tensor is three-dimensional." and that it is
/// one pass, for people.
std::string proposal_text(const MaskProposal& proposal);

/// What set_points takes to carry it out.
std::vector<Module_averaged_data::CurvePoints> points_to_mask(const LineConsistency& consistency,
                                                              const MaskProposal& proposal);

}  // namespace Module_rhoplus
