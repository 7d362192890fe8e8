// tensor_quantities.h: the names under which numbers of a tensor are written, with their units.
//
// Elements, and components of the phase tensor, are in the axes of the readings; angles are in degrees from
// north. pt_phi_max, pt_phi_min and pt_phi_geometric are phases, arc tangents of what the phase tensor has.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "numerics/impedance/phase_tensor.h"
#include "tensor/station_tensor.h"

namespace Module_tensor {

/// What a station has at one frequency: a tensor, a tipper or both.
class PointValues {
 public:
  /// @param tensor, tipper  in the axes of the readings; null if there is none. They must outlive this.
  /// @param axes            azimuth of x, degrees from north
  PointValues(double frequency, const numerics::impedance::Tensor* tensor,
              const numerics::impedance::Tipper* tipper, double axes);

  [[nodiscard]] double frequency() const { return frequency_; }
  [[nodiscard]] double axes() const { return axes_; }
  [[nodiscard]] const numerics::impedance::Tensor* tensor() const { return tensor_; }
  [[nodiscard]] const numerics::impedance::Tipper* tipper() const { return tipper_; }
  /// Computed once.
  [[nodiscard]] const std::optional<numerics::impedance::PhaseTensor>& phase_tensor() const {
    return phase_tensor_;
  }

 private:
  double frequency_;
  double axes_;
  const numerics::impedance::Tensor* tensor_;
  const numerics::impedance::Tipper* tipper_;
  std::optional<numerics::impedance::PhaseTensor> phase_tensor_;
};

struct TensorQuantity {
  std::string name;
  std::string unit;  // empty: none
  std::function<numerics::impedance::Estimate(const PointValues&)> of;
};

/// All quantities by name.
/// @param rotation  azimuth of x, degrees from north, of axes in which elements are given as well; their
///                  names say it: z30_xy_re
std::vector<TensorQuantity> tensor_quantities(std::optional<double> rotation = std::nullopt);

/// The points of a station, ascending in frequency: those of its tensor and those of its tipper. The station
/// must outlive them.
std::vector<PointValues> points_of(const StationTensor& station);

}  // namespace Module_tensor
