// point_plane.h: scattered points in the units of a grid, and the plane that lies closest to them.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

namespace numerics::gridding {

/// A point in cells from the grid's first node.
struct CellPoint {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// Points nearest to the same node become one: the mean of x, y and z. An exact fit of close points with
/// different values would throw the surface far beyond them.
std::vector<CellPoint> merge_at_nodes(std::span<const CellPoint> points, std::size_t columns,
                                      std::size_t rows);

/// Root mean square distance of the points from the line that fits them best, in cells.
double distance_from_line(std::span<const CellPoint> points);

/// z = level + slope_x (x - centre_x) + slope_y (y - centre_y)
struct Plane {
  double centre_x = 0.0;
  double centre_y = 0.0;
  double level = 0.0;
  double slope_x = 0.0;
  double slope_y = 0.0;

  [[nodiscard]] double at(double x, double y) const {
    return level + slope_x * (x - centre_x) + slope_y * (y - centre_y);
  }
};

/// The plane with the least squared distance in z; points that don't lie on one line.
Plane closest_plane(std::span<const CellPoint> points);

}  // namespace numerics::gridding
