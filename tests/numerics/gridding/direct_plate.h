// direct_plate.h: the surface of minimum curvature by a sparse direct solution, assembled term by term: slow,
// and without anything in common with the iterative one.
#pragma once
#include <span>
#include <vector>

#include "numerics/gridding/minimum_curvature.h"

/// The exact minimum of the bending energy plus 100 times the squared misfits at the points, which are fitted
/// by cubic Lagrange interpolation; a point on a node fixes it. No two points may have one nearest node.
std::vector<double> direct_plate(std::span<const numerics::gridding::ScatteredPoint> points,
                                 const numerics::gridding::GridFrame& frame);

/// The surface at a position inside the grid, by the same interpolation.
double surface_at(const numerics::gridding::RegularGrid& grid, double x, double y);
