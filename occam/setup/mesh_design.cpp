#include "occam/setup/mesh_design.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>

#include "formats/occam/occam_model.h"

namespace Module_occam {

namespace {

constexpr double padding_growth = 3.0;
constexpr std::size_t padding_columns = 7;
constexpr std::size_t padding_rows = 4;
constexpr double widest_padding = 1e6;  // m
constexpr double deepest = 1e13;        // m; a larger size doesn't fit its field
constexpr std::size_t max_line_nodes = 20000;
constexpr int max_layers = 10000;

std::array<double, padding_columns> side_padding(double column_width) {
  std::array<double, padding_columns> padding{};
  double width = column_width;
  for (double& column : padding) {
    width = std::min(padding_growth * width, widest_padding);
    column = width;
  }
  return padding;
}

void add_block(MeshColumns& columns, std::span<const double> widths) {
  columns.widths.insert(columns.widths.end(), widths.begin(), widths.end());
  columns.block_widths.push_back(std::accumulate(widths.begin(), widths.end(), 0.0));
  columns.block_columns.push_back(static_cast<int>(widths.size()));
}

void add_block(MeshColumns& columns, double left, double right) {
  add_block(columns, std::array<double, 2>{left, right});
}

/// The blocks of one layer, one or more.
struct BlockList {
  std::vector<double> widths;
  std::vector<int> columns;

  [[nodiscard]] std::size_t count() const { return widths.size(); }
};

/// Joins each block with its right neighbours until they are too wide together. The first and the last one
/// are padding.
void join_narrow_blocks(BlockList& blocks, double thickness, double doubling_threshold) {
  std::size_t last = 0;  // of the finished blocks, which move to the front
  for (std::size_t block = 1; block < blocks.count(); ++block) {
    const double width = blocks.widths[block];
    const bool stands_alone = block < 2 || block + 1 == blocks.count();
    if (!stands_alone && (blocks.widths[last] + width) * doubling_threshold < thickness) {
      blocks.widths[last] += width;
      blocks.columns[last] += blocks.columns[block];
    } else {
      ++last;
      blocks.widths[last] = width;
      blocks.columns[last] = blocks.columns[block];
    }
  }
  blocks.widths.resize(last + 1);
  blocks.columns.resize(last + 1);
}

void join_stranded_margin(BlockList& blocks) {
  constexpr double thin = 8.0;
  const std::size_t count = blocks.count();
  if (count > 3 && blocks.widths[count - 3] / thin >= blocks.widths[count - 2]) {
    blocks.widths[count - 3] += blocks.widths[count - 2];
    blocks.columns[count - 3] += blocks.columns[count - 2];
    blocks.widths.erase(blocks.widths.end() - 2);
    blocks.columns.erase(blocks.columns.end() - 2);
  }
}

void check_depth(double height) {
  if (!(height < deepest)) {
    throw std::runtime_error("the layers reach too deep");
  }
}

}  // namespace

std::vector<float> horizontal_nodes(std::span<const float> site_positions, double block_width) {
  std::vector<float> nodes;
  for (const float position : site_positions) {
    if (!nodes.empty()) {
      const double first = nodes.back();
      const double distance = position - first;
      if (!(distance > 0.0)) {
        throw std::runtime_error("two stations have the same position");
      }
      const double steps = distance > block_width ? std::floor(distance / block_width + 0.5) : 1.0;
      if (!(steps + static_cast<double>(nodes.size()) < static_cast<double>(max_line_nodes))) {
        throw std::runtime_error("the block width is too small for the length of the line");
      }
      for (int step = 1; step < static_cast<int>(steps); ++step) {
        nodes.push_back(static_cast<float>(first + step * distance / steps));
      }
    }
    nodes.push_back(position);
  }
  return nodes;
}

MeshColumns mesh_columns(std::span<const float> nodes) {
  assert(nodes.size() >= 2);
  const auto half_spacing = [&nodes](std::size_t left) {
    return (static_cast<double>(nodes[left + 1]) - nodes[left]) / 2.0;
  };
  MeshColumns columns;
  double width = half_spacing(0);
  std::array<double, padding_columns> padding = side_padding(width);
  std::ranges::reverse(padding);
  add_block(columns, padding);
  add_block(columns, width, width);  // margin
  add_block(columns, width, width);  // around the first node
  columns.binding_distance = 3.0 * width;
  for (std::size_t node = 1; node + 1 < nodes.size(); ++node) {
    const double left = width;
    width = half_spacing(node);
    add_block(columns, left, width);
  }
  add_block(columns, width, width);  // around the last node
  add_block(columns, width, width);  // margin
  add_block(columns, side_padding(width));
  return columns;
}

MeshRows mesh_rows(int layers, double layers_per_decade, double top_layer) {
  if (layers > max_layers) {
    throw std::runtime_error("there are more than " + std::to_string(max_layers) + " layers");
  }
  const double growth = std::pow(10.0, 1.0 / layers_per_decade);
  MeshRows rows;
  double depth = 0.0;
  double thickness = top_layer;
  for (int layer = 1; layer < std::max(layers, 2); ++layer) {
    thickness = std::max(depth * growth - depth, top_layer);
    check_depth(thickness);
    depth += thickness;
    const int row_count = layer <= 2 ? 2 : 1;
    rows.layer_thickness.push_back(thickness);
    rows.layer_rows.push_back(row_count);
    rows.heights.insert(rows.heights.end(), static_cast<std::size_t>(row_count), thickness / row_count);
  }
  double height = thickness;
  for (std::size_t row = 0; row < padding_rows; ++row) {
    height *= padding_growth;
    check_depth(height);
    rows.heights.push_back(height);
  }
  if (layers == 1) {
    rows.layer_thickness.back() = 0.0;
    rows.layer_rows.back() += static_cast<int>(padding_rows);
  } else {
    rows.layer_thickness.push_back(0.0);
    rows.layer_rows.push_back(static_cast<int>(padding_rows));
  }
  return rows;
}

std::vector<LayerLines> merge_blocks(const MeshColumns& columns, const MeshRows& rows,
                                     double doubling_threshold) {
  std::vector<LayerLines> layers;
  layers.reserve(rows.layer_rows.size());
  BlockList blocks{columns.block_widths, columns.block_columns};
  for (std::size_t layer = 0; layer < rows.layer_rows.size(); ++layer) {
    join_narrow_blocks(blocks, rows.layer_thickness[layer], doubling_threshold);
    join_stranded_margin(blocks);
    layers.push_back({rows.layer_rows[layer], blocks.columns});
  }
  return layers;
}

std::string size_warning(int columns, int rows) {
  constexpr int most = max_nodes - 1;
  if (columns <= most && rows <= most) {
    return {};
  }
  return "The mesh has " + std::to_string(columns) + " columns and " + std::to_string(rows) +
         " rows of cells; the results of a run with more than " + std::to_string(most) +
         " of either can't be opened here";
}

int block_count(const std::vector<LayerLines>& layers) {
  return std::accumulate(layers.begin(), layers.end(), 0, [](int sum, const LayerLines& layer) {
    return sum + static_cast<int>(layer.block_columns.size());
  });
}

}  // namespace Module_occam
