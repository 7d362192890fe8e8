#include "platform/vexminc32/point_plane.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace vexminc {

namespace {

// Sums of products of x, y, z about their means.
struct Moments {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  double xz = 0.0;
  double yz = 0.0;
};

Moments moments_of(std::span<const CellPoint> points) {
  Moments m;
  const auto count = static_cast<double>(points.size());
  for (const CellPoint& point : points) {
    m.x += point.x / count;
    m.y += point.y / count;
    m.z += point.z / count;
  }
  for (const CellPoint& point : points) {
    const double x = point.x - m.x;
    const double y = point.y - m.y;
    m.xx += x * x;
    m.xy += x * y;
    m.yy += y * y;
    m.xz += x * (point.z - m.z);
    m.yz += y * (point.z - m.z);
  }
  return m;
}

}  // namespace

std::vector<CellPoint> merge_at_nodes(std::span<const CellPoint> points, std::size_t columns,
                                      std::size_t rows) {
  struct Placed {
    std::size_t node;
    CellPoint point;
  };
  std::vector<Placed> placed;
  placed.reserve(points.size());
  for (const CellPoint& point : points) {
    const auto column = std::min(static_cast<std::size_t>(std::lround(point.x)), columns - 1);
    const auto row = std::min(static_cast<std::size_t>(std::lround(point.y)), rows - 1);
    placed.push_back({row * columns + column, point});
  }
  // By the values too, so that sums don't depend on the order of the points.
  std::sort(placed.begin(), placed.end(), [](const Placed& a, const Placed& b) {
    const auto key = [](const Placed& p) { return std::tie(p.node, p.point.x, p.point.y, p.point.z); };
    return key(a) < key(b);
  });
  std::vector<CellPoint> merged;
  for (std::size_t first = 0; first < placed.size();) {
    CellPoint sum = placed[first].point;
    std::size_t end = first + 1;
    for (; end < placed.size() && placed[end].node == placed[first].node; ++end) {
      sum.x += placed[end].point.x;
      sum.y += placed[end].point.y;
      sum.z += placed[end].point.z;
    }
    const auto count = static_cast<double>(end - first);
    merged.push_back({sum.x / count, sum.y / count, sum.z / count});
    first = end;
  }
  return merged;
}

double distance_from_line(std::span<const CellPoint> points) {
  const Moments m = moments_of(points);
  const double smaller =
      0.5 * (m.xx + m.yy) - std::hypot(0.5 * (m.xx - m.yy), m.xy);  // eigenvalue: squares across the line
  return std::sqrt(std::max(smaller, 0.0) / static_cast<double>(points.size()));
}

Plane closest_plane(std::span<const CellPoint> points) {
  const Moments m = moments_of(points);
  const double determinant = m.xx * m.yy - m.xy * m.xy;
  return {.centre_x = m.x,
          .centre_y = m.y,
          .level = m.z,
          .slope_x = (m.yy * m.xz - m.xy * m.yz) / determinant,
          .slope_y = (m.xx * m.yz - m.xy * m.xz) / determinant};
}

}  // namespace vexminc
