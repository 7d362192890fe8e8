// plate.h: the bending of a plate on a grid and the points that pull at it.
//
// In units of cells, over all nodes of the grid, the surface u minimises
//
//   E(u) = sum u_xx^2 + sum u_yy^2 + 2 sum u_xy^2 + W sum over the points of (p.u - t)^2
//
// with second differences wherever their nodes exist. Inside, the equation of the bending is the stencil of
// Briggs (1974), Geophysics 39, 39-48; the edges are those of a free plate without further ado. p
// interpolates at a point: cubic Lagrange on 4 by 4 nodes, exact for quadratics, so a smooth surface isn't
// bent by its own data.
//
// A point on a node fixes the node instead: it keeps its value, and every residual and search direction is 0
// there.
#pragma once
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "numerics/gridding/point_plane.h"

namespace numerics::gridding {

/// W. Between 20 and 1000 only the number of iterations changes.
constexpr double point_weight = 100.0;

struct PlateSize {
  std::size_t columns = 0;  // at least 4
  std::size_t rows = 0;

  [[nodiscard]] std::size_t nodes() const { return columns * rows; }
};

/// Cubic Lagrange interpolation at a point: weights of 4 by 4 nodes.
struct Interpolation {
  std::size_t first = 0;  // the lower left one of the nodes
  std::array<double, 4> x = {};
  std::array<double, 4> y = {};
};

class Plate {
 public:
  /// @param points  merged at nodes, inside the grid
  Plate(PlateSize size, std::span<const CellPoint> points);

  [[nodiscard]] PlateSize size() const { return size_; }
  /// The points that pull; those on nodes are not among them.
  [[nodiscard]] const std::vector<CellPoint>& pulling_points() const { return pulling_; }
  /// Numbers of the fixed nodes and the points on them.
  struct FixedNode {
    std::size_t node;
    CellPoint point;
  };
  [[nodiscard]] const std::vector<FixedNode>& fixed_nodes() const { return fixed_; }

  /// The surface at a pulling point.
  [[nodiscard]] double interpolated(std::span<const double> surface, std::size_t point) const;

  /// Half the gradient of E for targets of 0; 0 at fixed nodes.
  void apply(std::span<const double> surface, std::span<double> result) const;

  /// W sum of p t: the right side for the targets; 0 at fixed nodes.
  [[nodiscard]] std::vector<double> right_side(std::span<const double> targets) const;

  /// The operator's diagonal.
  [[nodiscard]] std::vector<double> diagonal() const;

  /// Sets the entries of fixed nodes to 0.
  void clear_fixed(std::span<double> values) const;

 private:
  void add_pull(double amount, const Interpolation& at, std::span<double> result) const;

  PlateSize size_;
  std::vector<CellPoint> pulling_;
  std::vector<Interpolation> interpolation_;
  std::vector<FixedNode> fixed_;
};

}  // namespace numerics::gridding
