// grid_export.h: an iteration as grids and tables for other programs, see docs/formats/occam_results.md.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "formats/occam/occam_model.h"
#include "formats/occam/occam_response.h"
#include "numerics/gridding/minimum_curvature.h"
#include "numerics/gridding/regular_grid.h"
#include "occam/results/run_view.h"

namespace Module_occam {

/// A block in the grids: the padding at the sides and at the bottom is no larger than its neighbour, and no
/// layer reaches beyond the uppermost one, whose blocks are the narrowest.
struct GridBlock {
  double left = 0.0;  // m along the line
  double right = 0.0;
  double top = 0.0;  // depth, m
  double bottom = 0.0;
  double value = 0.0;  // log10 ohm-m

  [[nodiscard]] double x() const { return 0.5 * (left + right); }
  [[nodiscard]] double elevation() const { return -0.5 * (top + bottom); }
};

/// The blocks with a parameter; those beyond 10 decades are left out.
std::vector<GridBlock> grid_blocks(const OccamModel& model, std::span<const double> parameters);

/// Distance of the nodes, m: half the narrowest column of the mesh, halved further until it is at most 2.5 m
/// more than half the lowest row.
double grid_cell(const OccamMesh& mesh);

/// The grid over all blocks, Y is the elevation; each node is the middle of a cell. The cell is larger than
/// asked for if there would be more than four million nodes.
numerics::gridding::GridFrame grid_frame(std::span<const GridBlock> blocks, double cell);

/// log10 resistivity: each node has the value of the block around it, no_data outside all blocks.
numerics::gridding::RegularGrid block_grid(std::span<const GridBlock> blocks,
                                           const numerics::gridding::GridFrame& frame);

/// Ten to the power of each value.
numerics::gridding::RegularGrid antilog(numerics::gridding::RegularGrid grid);

/// The text of the points file: for the middle of each block distance and elevation, m, resistivity, ohm-m,
/// and its log10; lines ending in CR LF.
std::string point_table(std::span<const GridBlock> blocks);
/// The text of a mode's fit file: for each site and frequency the four values of resistivity, log10 ohm-m
/// also where it is given itself, and of phase, degrees; "*" for an absent one.
std::string data_fit_table(const OccamResponse& response, const Mode& mode);

/// Writes grids, points and data fit (of TM, of TE if there is any) of the current iteration into the folder
/// of derived files and reports it. Without a response, the fit table is not written.
/// @return 0; -1 after a message or a stop: each file is then complete, the earlier or the new one
[[nodiscard]] int write_grids(RunView& view);

}  // namespace Module_occam
