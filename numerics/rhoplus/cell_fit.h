// cell_fit.h: the best density that is constant in each of many small cells, and the switches read from it.
#pragma once
#include <vector>

#include "numerics/rhoplus/fit_problem.h"

namespace numerics::rhoplus {

/// Inner edges of the cells, x, ascending. The first cell begins at lambda = 0, the last ends at the wall, so
/// nothing is cut off.
using CellEdges = std::vector<double>;

/// Evenly spaced over the band of the data and four decades to both sides, no further than the wall.
CellEdges even_edges(const FitProblem& problem, double cells_per_decade);

/// Cells of the given width (in x) around each switch, which is an edge itself; nothing else is
/// divided.
CellEdges edges_around(const FitProblem& problem, const SwitchModel& model, double width);

struct CellFitLimits {
  double relative_gap = 0.0;  // accepted excess of chi-squared over that of the best cells
  double misfit2 = 0.0;       // chi-squared that is good enough
};

/// The best cells, starting from a model whose switches are all among the edges, turned back into switches. A
/// fraction of a cell becomes a switch at the place that keeps its mass. The level is settled.
SwitchModel fit_cells(const FitProblem& problem, const CellEdges& edges, const SwitchModel& start,
                      const CellFitLimits& limits);

}  // namespace numerics::rhoplus
