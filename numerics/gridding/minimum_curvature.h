// minimum_curvature.h: the smoothest surface through scattered points, on a regular grid.
//
// The surface of Briggs (1974), Geophysics 39, 39-48, as a least-squares problem: a thin elastic plate with
// free edges, pulled to the points. See plate.h for the problem, spline_levels.h for what makes its solution
// fast.
#pragma once
#include <functional>
#include <optional>
#include <span>

#include "numerics/gridding/regular_grid.h"

namespace numerics::gridding {

struct ScatteredPoint {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

struct GriddingOptions {
  double stop_change =
      1e-4;  // of the data's range less their plane: largest change of a node in an iteration
  double largest_misfit = 1e-3;  // of the same range: a larger one at a point calls for another fit
  int iteration_limit = 500;     // of one fit

  /// Called now and then with an estimate of the share done, 0 to 1; false stops. May be empty.
  std::function<bool(double)> progress = {};
};

struct GriddedSurface {
  RegularGrid grid;
  int iterations = 0;     // on the grid itself, all fits together
  bool converged = true;  // false where the iteration limit was reached
};

/// Grids points. A point on a node gives the node its value to the bit; points nearest to the same node count
/// as one, at their mean; points outside the frame are left out.
///
/// Some per cent of overshoot beside a sharp contrast is the method's nature: grid log10 of what must stay
/// positive.
///
/// @return nothing if `progress` asked to stop
/// Throws std::invalid_argument, with a sentence for the user, for points or a frame that aren't finite,
/// fewer than four nodes a side, no point inside the frame, and points on one line (within a cell): nothing
/// holds the surface beside it.
std::optional<GriddedSurface> minimum_curvature(std::span<const ScatteredPoint> points,
                                                const GridFrame& frame, const GriddingOptions& options = {});

}  // namespace numerics::gridding
