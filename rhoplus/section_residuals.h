// section_residuals.h: the residuals of Rho+ over a line, kept while its stations stay as they are.
#pragma once
#include <cstdint>
#include <functional>
#include <vector>

#include "core/frequencies.h"
#include "output/rhoplus_settings.h"
#include "rhoplus/line_consistency.h"
#include "tensor/line_tensors.h"
#include "tensor/section_points.h"

namespace Module_rhoplus {

/// The residuals of a line for its pseudo-sections. After an edit only the stations are inverted again whose
/// curves are others.
class SectionResiduals {
 public:
  /// @param progress  as of line_consistency
  /// @return whether they are complete: false after a stop, which keeps what there was before
  bool update(const Module_tensor::LineTensors& line, const Frequencies& frequencies,
              const Module_output::RhoplusSettings& settings, const std::function<bool(double)>& progress);
  /// What update has found last, and of it what pseudo-sections take: in the order of the line's stations.
  [[nodiscard]] const LineConsistency& consistency() const { return consistency_; }
  [[nodiscard]] const std::vector<Module_tensor::StationResiduals>& stations() const { return residuals_; }

 private:
  LineConsistency consistency_;
  std::vector<Module_tensor::StationResiduals> residuals_;
  std::vector<std::uint64_t> inputs_;  // of each station: what it was computed from
};

}  // namespace Module_rhoplus
