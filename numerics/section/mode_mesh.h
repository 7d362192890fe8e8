// mode_mesh.h: what one mode sees of a section: rows of air in TE, the coefficients of its equation in each
// triangle, and the two columns whose layered field is the host and the right boundary.
//
//   TE (E along x):  laplace(E) = i omega mu sigma E          stiffness 1, mass sigma
//   TM (H along x):  div(rho grad H) = i omega mu H           stiffness rho, mass 1
//
// Cells and nodes are stored down the columns: cell (column, row) at column * rows + row, node at
// column * (rows + 1) + row. Rows count from the top, the added rows of air included.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "numerics/section/section.h"

namespace numerics::section {

enum class Mode : std::uint8_t { te, tm };

/// A column of cells as a layered earth; cells of differing triangles count with the mean over their ground,
/// of sigma in TE and of rho in TM.
struct LayeredColumn {
  std::size_t ground_row = 0;       // node row at which the ground begins
  std::vector<double> heights;      // m, of the rows of ground
  std::vector<double> resistivity;  // ohm-m, of the rows of ground
};

struct Cell {
  std::array<double, 4> stiffness = {};  // of each triangle; 0 in a triangle left out
  std::array<double, 4> mass = {};
  std::array<bool, 4> air = {};

  [[nodiscard]] bool touches_air() const { return air[0] || air[1] || air[2] || air[3]; }
  [[nodiscard]] bool all_air() const { return air[0] && air[1] && air[2] && air[3]; }
};

struct ModeMesh {
  Mode mode = Mode::te;
  std::size_t columns = 0;
  std::size_t rows = 0;
  std::size_t added_rows = 0;  // of air, above the section
  std::vector<double> widths;  // m, of each column
  std::vector<double> heights;
  std::vector<double> node_y;
  std::vector<double> node_z;  // 0 at the top of the section
  std::vector<Cell> cells;
  std::vector<std::uint8_t> touches_air;  // of each node, by the section's own triangles
  LayeredColumn host;                     // the left-most column
  LayeredColumn right;                    // the right-most one

  [[nodiscard]] std::size_t node(std::size_t column, std::size_t row) const {
    return column * (rows + 1) + row;
  }
  [[nodiscard]] const Cell& cell(std::size_t column, std::size_t row) const {
    return cells[column * rows + row];
  }
};

/// Throws std::invalid_argument if the first or last column holds no ground.
/// @param section  checked
ModeMesh make_mode_mesh(const Section& section, const AirMap& air, Mode mode);

/// Thicknesses of the rows of air above a mesh, from the ground upwards: the first as thick as the first row
/// of the mesh, then growing by one factor so that the last ends at 100 km; nine rows, more where the factor
/// would exceed 2.75. So coarse an air is part of the response that models were fitted with.
/// @param first_height  m
std::vector<double> air_rows(double first_height);

}  // namespace numerics::section
