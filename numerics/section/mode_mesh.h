// mode_mesh.h: what one mode sees of a section: rows of air in TE, the conductivity of each triangle, and the
// host.
//
//   TE (E along x):  laplace(E) = i omega mu s E          s = sigma + i omega epsilon
//   TM (H along x):  div(1/s grad H) = i omega mu H
//
// Cells and nodes are stored down the columns: cell (column, row) at column * rows + row, node at
// column * (rows + 1) + row. Rows count from the top, the added rows of air included.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "numerics/section/host.h"
#include "numerics/section/section.h"

namespace numerics::section {

enum class Mode : std::uint8_t { te, tm };

using Cell = std::array<double, 4>;  // S/m, conductivity of each triangle

struct ModeMesh {
  Mode mode = Mode::te;
  std::size_t columns = 0;
  std::size_t rows = 0;
  std::size_t added_rows = 0;  // of air, above the section
  std::vector<double> widths;  // m, of each column
  std::vector<double> heights;
  std::vector<double> node_z;  // 0 at the top of the section
  std::vector<Cell> cells;
  LayeredColumn host;  // its ground_row counts the added rows, too

  [[nodiscard]] std::size_t node(std::size_t column, std::size_t row) const {
    return column * (rows + 1) + row;
  }
  [[nodiscard]] const Cell& cell(std::size_t column, std::size_t row) const {
    return cells[column * rows + row];
  }
  [[nodiscard]] double host_conductivity(std::size_t row) const {
    return row < host.ground_row ? air_conductivity : host.conductivity[row - host.ground_row];
  }
};

/// @param section  checked
/// @param host     of the section
ModeMesh make_mode_mesh(const Section& section, const LayeredColumn& host, Mode mode);

}  // namespace numerics::section
