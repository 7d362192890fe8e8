// set_points.h: masking or unmasking points of many curves as one command.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "reduction/edits/masks.h"

namespace Module_averaged_data {

struct PointMask {
  float frequency = 0.0F;  // Hz, as the curve has it
  Component component = Component::resistivity;
  bool counts = false;  // false masks the point
};

/// Points of one curve.
struct CurvePoints {
  std::int32_t ID = 0;  // of its row
  std::vector<PointMask> points;
};

/// Sets masks of curves, of any stations, data types and lines, in one transaction and as one command to be
/// undone. What follows from repeats and averages is computed again, once for each key. A mask of a merged
/// curve changes nothing that is computed and stays when the curve is computed again. Points and curves that
/// aren't there, and points without a value, are left out; they change nothing. With many curves progress is
/// shown and the user may stop, which leaves everything as it was.
/// @return nothing also after a stop
[[nodiscard]] Edit set_points(std::span<const CurvePoints> curves);

}  // namespace Module_averaged_data
