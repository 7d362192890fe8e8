// spline_levels.h: a preconditioner for the plate's equations, from coarser and coarser grids of cubic
// B-splines.
//
//   M r = r / D_0 + sum over the levels of P..P (P^T..P^T r / D_l)
//
// Bramble, Pasciak & Xu (1990), Math. Comp. 55, 1-22. Smooth errors, which the conjugate gradients of the
// plate alone would remove only in as many iterations as the grid has nodes a side, are removed on the level
// of their size.
//
// Level l + 1 has n/2 + 3 nodes a side; its node k lies at node 2 (k - 1) of level l. P is the refinement of
// cubic B-splines: an even node is (1, 6, 1)/8, an odd one (1, 1)/2 of its coarse neighbours.
#pragma once
#include <span>
#include <vector>

#include "numerics/gridding/plate.h"

namespace numerics::gridding {

/// Nodes of the level above.
PlateSize coarser(PlateSize fine);

/// P: values on the coarser level, spread to the finer one, which they are added to.
void add_refined(std::span<const double> coarse, PlateSize fine_size, std::span<double> fine);

/// P^T: values on the finer level, gathered on the coarser one, whose values they replace.
void gather(std::span<const double> fine, PlateSize fine_size, std::span<double> coarse);

class SplineLevels {
 public:
  explicit SplineLevels(const Plate& plate);

  /// M r; 0 at fixed nodes.
  void apply(std::span<const double> residual, std::span<double> result);

 private:
  const Plate& plate_;
  std::vector<PlateSize> sizes_;               // of each level, the grid itself first
  std::vector<std::vector<double>> inverse_;   // 1 / D of each level
  std::vector<std::vector<double>> gathered_;  // of the residual, on each level above the grid
};

}  // namespace numerics::gridding
