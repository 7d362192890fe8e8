// set_points.h: masking or unmasking points of many merged curves as one command.
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

/// Points of one merged curve.
struct CurvePoints {
  std::int32_t ID = 0;  // of its row
  std::vector<PointMask> points;
};

/// Sets masks of merged curves, of any stations, data types and lines, in one transaction and as one command
/// to be undone. A mask of a merged curve changes nothing that is computed and stays when the curve is
/// computed again, so that nothing is computed here. Points and curves that aren't there, and points without
/// a value, are left out; they change nothing. With many curves progress is shown and the user may stop,
/// which leaves everything as it was.
/// @return nothing also after a stop
[[nodiscard]] Edit set_merged_points(std::span<const CurvePoints> curves);

}  // namespace Module_averaged_data
