#include "formats/occam/model_blocks.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

namespace Module_occam {

namespace {

/// '1' to '9' are 1 to 9, 'A' is 10.
std::int32_t numeric_code(char character) {
  switch (character) {
    case free_code:
      return free_cell;
    case sea_code:
      return sea_cell;
    case air_code:
      return air_cell;
    default:
      break;
  }
  const int code = static_cast<unsigned char>(character) - '0';
  return code > 9 ? code - 7 : code;
}

std::vector<CellCode> numeric_codes(const OccamMesh& mesh) {
  std::vector<CellCode> codes(mesh.node_widths.size() * mesh.node_heights.size());
  auto cell = codes.begin();
  for (const CodeLines& lines : mesh.mesh_code) {
    for (std::size_t column = 0; column < mesh.node_widths.size(); ++column, ++cell) {
      for (std::size_t triangle = 0; triangle < triangles; ++triangle) {
        (*cell)[triangle] = numeric_code(lines[triangle].at(column));
      }
    }
  }
  return codes;
}

void check_extent(const OccamMesh& mesh, const BlockExtent& extent) {
  if (extent.end_row > mesh.rows() || extent.end_column > mesh.columns()) {
    throw std::runtime_error("the blocks reach beyond the " + std::to_string(mesh.columns()) +
                             " columns and " + std::to_string(mesh.rows()) + " rows of the mesh");
  }
}

double sum_of(const std::vector<double>& sizes, int first, int end) {
  return std::accumulate(sizes.begin() + first, sizes.begin() + end, 0.0);
}

/// Gives every free triangle of the block the code of the next parameter. A block without one keeps the
/// number 0.
void number_block(OccamModel& model, OccamBlock& block) {
  const std::int32_t next_code = model.param_table_index(model.num_free_params + 1);
  bool is_free = false;
  const BlockExtent& extent = block.block_extent;
  for (int row = extent.top_row; row < extent.end_row; ++row) {
    for (int column = extent.left_column; column < extent.end_column; ++column) {
      const std::size_t cell =
          static_cast<std::size_t>(row) * model.mesh.node_widths.size() + static_cast<std::size_t>(column);
      for (std::int32_t& code : model.cell_code[cell]) {
        if (code == free_cell) {
          code = next_code;
          is_free = true;
        }
      }
    }
  }
  if (is_free) {
    block.parameter_number = ++model.num_free_params;
  }
}

void add_layer_blocks(OccamModel& model, int layer, int top_row) {
  const OccamMesh& mesh = model.mesh;
  const OccamLayer& lines = model.layers[static_cast<std::size_t>(layer)];
  int left_column = 0;
  for (const int columns : lines.block_columns) {
    OccamBlock block;
    block.layer = layer;
    // The sum can't overflow: every earlier column was found to lie inside the mesh.
    const std::int64_t end_column = left_column + std::abs(std::int64_t{columns});
    const std::int64_t end_row = top_row + std::int64_t{lines.layer_rows};
    block.block_extent = {
        top_row, left_column,
        static_cast<int>(std::min<std::int64_t>(end_row, mesh.rows() + std::int64_t{1})),
        static_cast<int>(std::min<std::int64_t>(end_column, mesh.columns() + std::int64_t{1}))};
    check_extent(mesh, block.block_extent);
    block.block_height = static_cast<float>(sum_of(mesh.node_heights, top_row, block.block_extent.end_row));
    block.block_width =
        static_cast<float>(sum_of(mesh.node_widths, left_column, block.block_extent.end_column));
    number_block(model, block);
    left_column = block.block_extent.end_column;
    model.blocks.push_back(block);
  }
}

/// Wherever a block's size matters, the padding at the sides and at the bottom counts as no larger than the
/// block beside or above it.
void repair_edge_blocks(OccamModel& model) {
  for (const OccamLayer& layer : model.layers) {
    const std::span<OccamBlock> blocks(model.blocks.data() + layer.first_block, layer.block_columns.size());
    if (blocks.size() > 1) {
      blocks.front().block_width = blocks[1].block_width;
      blocks.back().block_width = blocks[blocks.size() - 2].block_width;
    }
  }
  if (model.layers.size() > 1) {
    const float height_above = model.layer_block(model.num_layers() - 2, 0).block_height;
    for (int place = 0; place < model.layers.back().layer_blocks(); ++place) {
      model.blocks[model.block_index(model.num_layers() - 1, place)].block_height = height_above;
    }
  }
}

std::vector<double> positions_from(double first, const std::vector<double>& sizes) {
  std::vector<double> positions{first};
  for (const double size : sizes) {
    positions.push_back(positions.back() + size);
  }
  return positions;
}

void place_nodes(OccamModel& model) {
  const OccamMesh& mesh = model.mesh;
  const OccamBlock& first = model.blocks.front();
  model.node_x = positions_from(
      model.binding_offset - sum_of(mesh.node_widths, 0, first.block_extent.end_column), mesh.node_widths);
  model.node_z = positions_from(0.0, mesh.node_heights);
  model.column_is_block_edge.assign(model.node_x.size(), false);
  for (int place = 0; place < model.layers.front().layer_blocks(); ++place) {
    const int edge = model.layer_block(0, place).block_extent.end_column;
    model.column_is_block_edge[static_cast<std::size_t>(edge)] = true;
  }
}

}  // namespace

OccamModel build_model(OccamMesh mesh, std::vector<OccamLayer> layers, double binding_offset) {
  OccamModel model;
  model.mesh = std::move(mesh);
  model.layers = std::move(layers);
  model.binding_offset = binding_offset;
  model.cell_code = numeric_codes(model.mesh);
  int top_row = 0;
  for (int layer = 0; layer < model.num_layers(); ++layer) {
    OccamLayer& lines = model.layers[static_cast<std::size_t>(layer)];
    if (lines.layer_rows < 1 || lines.block_columns.empty() ||
        std::ranges::find(lines.block_columns, 0) != lines.block_columns.end()) {
      throw std::runtime_error("layer " + std::to_string(layer + 1) + " has a block without cells");
    }
    lines.first_block = model.num_blocks();
    add_layer_blocks(model, layer, top_row);
    top_row = model.blocks.back().block_extent.end_row;
  }
  if (model.blocks.empty()) {
    throw std::runtime_error("the model has no layers");
  }
  repair_edge_blocks(model);
  if (model.mesh.node_columns() > max_nodes || model.mesh.node_rows() > max_nodes) {
    throw std::runtime_error("the mesh has more than " + std::to_string(max_nodes - 1) +
                             " columns or rows of cells");
  }
  place_nodes(model);
  return model;
}

std::vector<std::int32_t> place_sites(const OccamModel& model, std::span<const float> site_offsets) {
  std::vector<std::int32_t> site_node(site_offsets.size(), no_site_node);
  std::size_t search_start = 1;
  for (std::size_t site = 0; site < site_offsets.size(); ++site) {
    const double offset = site_offsets[site];
    std::size_t node = search_start;
    while (node < model.node_x.size() && static_cast<float>(model.node_x[node]) < site_offsets[site]) {
      ++node;
    }
    if (node >= model.node_x.size()) {
      continue;
    }
    search_start = node;
    const bool right_is_nearer = model.node_x[node] - offset <= offset - model.node_x[node - 1];
    const std::size_t nearer = right_is_nearer ? node : node - 1;
    const std::size_t other = right_is_nearer ? node - 1 : node;
    site_node[site] = static_cast<std::int32_t>(model.column_is_block_edge[nearer] ? other : nearer);
  }
  return site_node;
}

bool sites_share_node(std::span<const std::int32_t> site_node) {
  std::vector<std::int32_t> nodes;
  std::ranges::copy_if(site_node, std::back_inserter(nodes), [](std::int32_t node) { return node >= 0; });
  std::ranges::sort(nodes);
  return std::ranges::adjacent_find(nodes) != nodes.end();
}

}  // namespace Module_occam
