// conjugate_gradients.h: the plate under its points, by preconditioned conjugate gradients.
#pragma once
#include <functional>
#include <span>

#include "numerics/gridding/plate.h"
#include "numerics/gridding/spline_levels.h"

namespace numerics::gridding {

struct IterationLimits {
  double min_change = 0.0;  // of the surface; stops when no node changes by more, several times in a row
  int iterations = 0;
  std::function<bool(double)> progress;  // called with the share done, see GriddingOptions; may be empty
};

struct IterationOutcome {
  int iterations = 0;
  bool converged = false;
  bool stopped = false;  // by the caller's progress function
};

/// Moves the surface towards the minimum for the targets; fixed nodes keep the values they have. Hestenes &
/// Stiefel (1952), J. Res. Nat. Bur. Stand. 49, 409-436, with the levels as preconditioner.
/// @param targets  of the plate's pulling points, in the unit of the surface
/// @param surface  a value for each node of the plate; where to start, then the result
IterationOutcome relax(const Plate& plate, SplineLevels& levels, std::span<const double> targets,
                       const IterationLimits& limits, std::span<double> surface);

}  // namespace numerics::gridding
