#include "numerics/section/host.h"

#include <stdexcept>
#include <string>

namespace numerics::section {

namespace {

struct Layers {
  std::size_t ground_row = 0;
  std::vector<std::size_t> first_row;  // of each layer
};

// Down the column; air below ground begins the ground anew.
Layers layers_of(const Section& section, std::size_t column, Triangle outer) {
  Layers layers;
  for (std::size_t row = 0; row < section.rows(); ++row) {
    if (section.is_air(column, row, top_triangle)) {
      layers = {.ground_row = row + 1, .first_row = {}};
      continue;
    }
    if (layers.first_row.empty() ||
        section.code(column, row, outer) != section.code(column, row - 1, outer)) {
      layers.first_row.push_back(row);
      if (layers.first_row.size() == section.host_layers) {
        break;
      }
    }
  }
  return layers;
}

}  // namespace

LayeredColumn end_column(const Section& section, End end) {
  const std::size_t column = end == End::left ? 0 : section.columns() - 1;
  const Triangle outer = end == End::left ? left_triangle : right_triangle;
  const Layers layers = layers_of(section, column, outer);
  if (layers.first_row.empty()) {
    throw std::invalid_argument("column " + std::to_string(column + 1) +
                                " of the mesh is air from top to bottom");
  }
  LayeredColumn result;
  result.ground_row = layers.ground_row;
  const bool all_begun = layers.first_row.size() == section.host_layers;
  for (std::size_t row = layers.ground_row; row < section.rows(); ++row) {
    const bool in_last = all_begun && row >= layers.first_row.back();
    result.heights.push_back(section.row_heights[row]);
    result.conductivity.push_back(1.0 /
                                  section.resistivity(column, in_last ? section.rows() - 1 : row, outer));
  }
  return result;
}

LayeredColumn host_column(const Section& section) {
  LayeredColumn left = end_column(section, End::left);
  LayeredColumn right = end_column(section, End::right);
  return right.conductivity.front() < left.conductivity.front() ? right : left;
}

}  // namespace numerics::section
