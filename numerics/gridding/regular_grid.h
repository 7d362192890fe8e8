// regular_grid.h: values on a regular grid of square cells.
//
// Node (column, row) lies at first_x + column * cell, first_y + row * cell: rows count upwards, so a section
// whose Y is elevation begins with its deepest row.
#pragma once
#include <cstddef>
#include <vector>

namespace numerics::gridding {

struct GridFrame {
  double first_x = 0.0;  // of the lower left node itself, not of a cell's corner
  double first_y = 0.0;
  double cell = 1.0;        // distance of nodes in both directions, > 0
  std::size_t columns = 0;  // nodes along X
  std::size_t rows = 0;     // nodes along Y
};

struct RegularGrid {
  GridFrame frame;
  std::vector<double> values;  // of node (column, row) at [row * columns + column]
};

}  // namespace numerics::gridding
