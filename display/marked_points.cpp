#include "display/marked_points.h"

#include <algorithm>
#include <utility>

namespace Module_display_data {

namespace {

std::vector<MarkedPoint>& marked() {
  static std::vector<MarkedPoint> points;  // ascending
  return points;
}

}  // namespace

void mark_points(std::vector<MarkedPoint> points) {
  std::ranges::sort(points);
  marked() = std::move(points);
}

bool is_marked(const MarkedPoint& point) { return std::ranges::binary_search(marked(), point); }

}  // namespace Module_display_data
