// mesh_design.h: lays a mesh around the sites of a line and joins its cells to blocks that grow with depth.
//
// Lengths m. Each site is on the middle line of a block of two columns, so that it has a block of its own
// below it.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "formats/occam/model_file.h"

namespace Module_occam {

/// The positions that get a block: the sites, and between two that are further apart than a block's width as
/// many equally spaced nodes as bring the spacing closest to that width.
/// @param site_positions  m along the line
/// Throws std::runtime_error if positions don't ascend, or if there would be more nodes than any inversion
/// can handle.
std::vector<float> horizontal_nodes(std::span<const float> site_positions, double block_width);

struct MeshColumns {
  std::vector<double> widths;        // of the columns of cells, left to right
  std::vector<double> block_widths;  // of the blocks of the top layer
  std::vector<int> block_columns;    // columns of cells of each of them
  double binding_distance = 0.0;     // from the right edge of the first block to the first node
};

/// Columns for two or more nodes: two between the middles of neighbouring spacings around each node, a margin
/// block at either side, and seven columns of padding that grow threefold.
MeshColumns mesh_columns(std::span<const float> nodes);

struct MeshRows {
  std::vector<double> heights;          // of the rows of cells, top down
  std::vector<double> layer_thickness;  // 0 for the last layer, which is padding
  std::vector<int> layer_rows;          // rows of cells of each layer
};

/// Rows for layers whose depths grow by a constant factor, none thinner than the top one. The two uppermost
/// layers have two rows each; the last layer is padding of four rows that grow threefold.
/// @param layers  1 or more, padding included; a single layer is both top layer and padding
MeshRows mesh_rows(int layers, double layers_per_decade, double top_layer);

/// Joins neighbouring blocks, layer by layer from the top down, while two together are narrower than the
/// layer's thickness over `doubling_threshold`. Padding is not joined; a margin block that is left thin
/// beside a wide one is joined to it.
std::vector<LayerLines> merge_blocks(const MeshColumns& columns, const MeshRows& rows,
                                     double doubling_threshold);

/// What a user is to know about a mesh of so many cells: readers take no more than a fixed number either way.
/// Empty for a smaller one.
std::string size_warning(int columns, int rows);

/// Blocks of all layers.
int block_count(const std::vector<LayerLines>& layers);

}  // namespace Module_occam
