// topo_mask.h: fixes the cells of a mesh above the ground, so that a model follows the topography.
//
// Conventions: stations and depths m; depths from the mesh's upper edge down, elevations up.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "formats/occam/occam_model.h"
#include "occam/ground/topo_points.h"
#include "occam/ground/wall_stations.h"

namespace Module_occam {

/// The triangles of a cell, in the order of its code lines.
enum class Triangle : std::uint8_t { top, left, bottom, right };

enum class MaskStyle : std::uint8_t {
  rectangular,  // whole cells, including the one that the ground crosses
  triangular,   // in the cell that the ground crosses, only triangles that the free one doesn't rest on
};

inline constexpr char masked_code = air_code;

struct MaskChoices {
  MaskStyle style = MaskStyle::rectangular;
  Triangle free_triangle = Triangle::bottom;  // of the cell that the ground crosses
  double datum_elevation = 0.0;               // of the mesh's upper edge
};

/// The depth of the ground in each column of cells; 0 or less where the ground is at the mesh's upper edge or
/// above it. All columns of a block of the first layer have that at the block's middle, so that walls lie at
/// the edges of blocks and never under a station within one. The middle of a padding block lies beyond the
/// topography, whose nearest point then counts. Columns outside all blocks have a depth of their own.
std::vector<double> ground_depths(const OccamModel& model, const numerics::gridding::CubicSpline& ground,
                                  double datum_elevation);

/// The code lines of the model's mesh with everything above the ground masked.
///
/// A column is masked from the mesh's upper edge down to the first node line at or below its ground, so the
/// mask is always connected to the air. In the triangular style the lowest of these cells, the one that the
/// ground crosses, keeps the free triangle and those below it that carry it: no ground hangs in the air and
/// no air is under ground. What is kept has the code as read. A cell that the ground only touches from below
/// is masked as a whole.
///
/// Throws std::runtime_error if a column has no cell below the ground.
std::vector<CodeLines> masked_codes(const OccamModel& model, const numerics::gridding::CubicSpline& ground,
                                    const MaskChoices& choices);

/// The number of free triangles ("?").
std::int64_t free_triangles(const std::vector<CodeLines>& codes);

/// Whether a block of a model has a free triangle.
bool is_free(const OccamBlock& block, const std::vector<CodeLines>& codes);

/// The number of blocks with a free triangle: the parameters of an inversion with these codes.
int free_blocks(const OccamModel& model, const std::vector<CodeLines>& codes);

/// The mesh as lines of text for a fixed-width font: each row of cells with its number, its depths and its
/// four code lines.
std::string mesh_listing(const OccamModel& model, const std::vector<CodeLines>& codes);

/// A model, the ground over it, and the mesh as masked by it.
struct TopoMask {
  std::string model_path;
  OccamModel model;       // its mesh's code lines are those as read
  MaskStations stations;  // of the run that the model belongs to, if there is one
  safe_files::FilesInUse model_files;
  Topo topo;
  MaskChoices choices;
  std::vector<CodeLines> masked;  // by the last apply_topo_mask; empty before the first one
};

/// Reads the model of a named file and its mesh, without sites.
/// @return 0; -1 after a message, mask.model is then as before
[[nodiscard]] int read_model_to_mask(const std::string& path, TopoMask& mask);

/// Makes mask.masked from the code lines as read; there must be points.
/// @return 0; -1 after a message, mask.masked is then as before
[[nodiscard]] int apply_topo_mask(TopoMask& mask);

/// True if no such file exists, or the user agrees to replace it. A file that the mask is made from is
/// refused with a message.
bool may_write_mesh(const std::string& path);

/// The names of the stations on a wall of the masked mesh: those of the run, or else of the topo file.
std::vector<std::string> wall_stations(const TopoMask& mask);

}  // namespace Module_occam
