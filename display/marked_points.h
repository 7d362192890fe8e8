// marked_points.h: points that the graphs ring, as something has been proposed for them and nothing done yet.
#pragma once
#include <cstdint>
#include <vector>

#include "reduction/edits/masks.h"

namespace Module_display_data {

struct MarkedPoint {
  std::int32_t ID = 0;     // of the reading
  float frequency = 0.0F;  // Hz
  Module_averaged_data::Component component = Module_averaged_data::Component::resistivity;

  auto operator<=>(const MarkedPoint&) const =
      default;  // NOLINT(modernize-use-nullptr): of the comparison that the compiler makes
};

/// Rings these points, and no others, in the profile and the station's graphs from when they are drawn next.
void mark_points(std::vector<MarkedPoint> points);

[[nodiscard]] bool is_marked(const MarkedPoint& point);

}  // namespace Module_display_data
