// occam_model.h: the regularisation blocks of a two-dimensional inversion, on their mesh.
//
// Conventions: layers, blocks, rows and columns count from 0; free parameters are numbered from 1, as the
// iteration files list them; lengths m.
#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "formats/occam/occam_mesh.h"
#include "formats/occam/shift_file.h"

namespace Module_occam {

inline constexpr int max_nodes = 512;             // limit of node lines, across and down
inline constexpr std::int32_t free_cell = -99;    // code of a free triangle outside all blocks
inline constexpr std::int32_t sea_cell = -1;      // code of sea water
inline constexpr std::int32_t air_cell = 0;       // code of air
inline constexpr std::int32_t no_site_node = -1;  // a site beyond the last node

/// The numeric codes of a cell's triangles: air, sea water, or an index from 1 of the table of resistivities,
/// the fixed ones first, then the free parameters.
using CellCode = std::array<std::int32_t, triangles>;

/// The node lines around a block: from node_z[top_row] down to node_z[end_row] and from node_x[left_column]
/// to node_x[end_column].
struct BlockExtent {
  int top_row = 0;
  int left_column = 0;
  int end_row = 0;
  int end_column = 0;
};

struct OccamBlock {
  int layer = 0;
  int parameter_number = 0;  // from 1; 0 for a block without a free triangle
  float block_width = 0.0F;  // m; the padding at the sides and at the bottom counts as large as its neighbour
  float block_height = 0.0F;  // m
  BlockExtent block_extent;   // of the whole block, padding included
};

struct OccamLayer {
  int layer_rows = 0;              // rows of cells
  std::vector<int> block_columns;  // columns of cells of each block, left to right; the sign is as read
  int first_block = 0;             // the layer's blocks begin at blocks[first_block]

  [[nodiscard]] int layer_blocks() const { return static_cast<int>(block_columns.size()); }
};

struct OccamModel {
  OccamMesh mesh;
  double binding_offset = 0.0;  // of the left edge of the second block of the first layer, m along the line
  std::vector<double> node_x;   // of the node lines across, m along the line
  std::vector<double> node_z;   // depth of the node lines down, m
  std::vector<bool>
      column_is_block_edge;         // by node line across: the right edge of a block of the first layer
  std::vector<CellCode> cell_code;  // row by row
  std::vector<OccamLayer> layers;   // top down
  std::vector<OccamBlock> blocks;   // layer by layer, left to right, fixed ones included
  int num_free_params = 0;          // of the blocks
  std::vector<StaticShift> static_shifts;  // of the model's statics file
  ShiftConstraint shift_constraint = ShiftConstraint::none;
  double shift_constraint_error = 0.0;  // decades
  std::vector<std::int32_t> site_node;  // node line of each site, or no_site_node
  std::string mesh_file;                // that the mesh was read from; empty if it was made here

  [[nodiscard]] int num_layers() const { return static_cast<int>(layers.size()); }
  [[nodiscard]] int num_blocks() const { return static_cast<int>(blocks.size()); }
  [[nodiscard]] int num_free_shifts() const {
    return static_cast<int>(std::ranges::count_if(static_shifts, &StaticShift::is_free));
  }
  /// Block `place` of layer `layer`.
  [[nodiscard]] const OccamBlock& layer_block(int layer, int place) const {
    return blocks[block_index(layer, place)];
  }
  [[nodiscard]] std::size_t block_index(int layer, int place) const {
    return static_cast<std::size_t>(layers[static_cast<std::size_t>(layer)].first_block) +
           static_cast<std::size_t>(place);
  }
  /// Index from 1 of a free parameter in the table of resistivities.
  [[nodiscard]] int param_table_index(int parameter_number) const {
    return parameter_number + mesh.num_fixed_res();
  }
};

}  // namespace Module_occam
