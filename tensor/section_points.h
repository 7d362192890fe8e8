// section_points.h: the values of a quantity at a station, as a pseudo-section is made from them.
//
// Apparent resistivity and phase of xy and yx are those of the merged curves, everything else is made from
// tensors and tippers. Only frequencies that are switched on in the list have points.
#pragma once
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "core/frequencies.h"
#include "numerics/impedance/phase_tensor.h"
#include "tensor/line_tensors.h"
#include "tensor/section_quantity.h"

namespace Module_tensor {

/// The phase tensors of a station, in the order of its tensor points, in axes whose x is north.
using StationPhaseTensors = std::vector<std::optional<numerics::impedance::PhaseTensor>>;

/// Of a line, in the order of its stations. They take longer than a picture: keep them while the line stays.
std::vector<StationPhaseTensors> phase_tensors_of(const LineTensors& line);

/// What one-dimensional ground leaves of a point of a merged curve, in errors of the datum; NaN: nothing is
/// known.
struct CurveResidual {
  float frequency = 0.0F;  // Hz
  double resistivity = std::numeric_limits<double>::quiet_NaN();
  double phase = std::numeric_limits<double>::quiet_NaN();
};
/// Of a station's ExHy and EyHx.
using StationResiduals = std::array<std::vector<CurveResidual>, 2>;

/// What the sections of a line are made from. All of it outlives them.
struct SectionSource {
  const LineTensors* line = nullptr;
  const Frequencies* frequencies = nullptr;  // of the line's reference type
  std::span<const StationPhaseTensors> phase_tensors;
  std::span<const StationResiduals> residuals;  // in the order of the stations; empty: none are known
};

struct SectionPoint {
  static constexpr double none = std::numeric_limits<double>::quiet_NaN();

  double frequency = 0.0;  // Hz
  double value = none;  // of a resistivity its decimal logarithm; NaN where a mask leaves nothing to compute
  double error = none;  // of the quantity itself: of a resistivity ohm-m; NaN: not known
  double depth = none;  // m, of a depth section
  bool counts = false;  // false: masked
  const numerics::impedance::PhaseTensor* tensor = nullptr;  // of an ellipse

  [[nodiscard]] bool has_value() const { return value == value; }
};

/// The points of a station, by falling frequency: those with a value, and those that a mask takes out.
std::vector<SectionPoint> section_points(const SectionSource& source, std::size_t station,
                                         SectionQuantity quantity);

}  // namespace Module_tensor
