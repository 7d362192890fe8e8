#include "numerics/gridding/point_plane.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

namespace numerics::gridding {

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

// Of one point or more, in an order of their values, so that sums don't depend on the order they come in.
CellPoint mean_of(std::span<CellPoint> points) {
  std::ranges::sort(points, [](const CellPoint& a, const CellPoint& b) {
    return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z);
  });
  CellPoint sum;
  for (const CellPoint& point : points) {
    sum.x += point.x;
    sum.y += point.y;
    sum.z += point.z;
  }
  const auto count = static_cast<double>(points.size());
  return {sum.x / count, sum.y / count, sum.z / count};
}

}  // namespace

std::vector<CellPoint> merge_at_nodes(std::span<const CellPoint> points, std::size_t columns,
                                      std::size_t rows) {
  const auto node_of = [&](const CellPoint& point) {
    const auto column = std::min(static_cast<std::size_t>(std::lround(point.x)), columns - 1);
    const auto row = std::min(static_cast<std::size_t>(std::lround(point.y)), rows - 1);
    return row * columns + column;
  };
  std::vector<std::size_t> end_of_node(columns * rows + 1);
  for (const CellPoint& point : points) {
    ++end_of_node[node_of(point) + 1];
  }
  std::partial_sum(end_of_node.begin(), end_of_node.end(), end_of_node.begin());
  std::vector<CellPoint> sorted(points.size());
  for (const CellPoint& point : points) {
    sorted[end_of_node[node_of(point)]++] = point;
  }
  std::vector<CellPoint> merged;
  merged.reserve(points.size());
  std::size_t first = 0;
  for (const std::size_t end : end_of_node) {
    if (end > first) {
      merged.push_back(mean_of(std::span(sorted).subspan(first, end - first)));
      first = end;
    }
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

}  // namespace numerics::gridding
