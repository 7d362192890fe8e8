// occam_mesh.h: the finite-element mesh of a two-dimensional inversion, as in its file.
//
// Conventions: rows count from the surface down, columns from left to right along the line, both from 0;
// lengths m. A cell is cut by its diagonals into four triangles, each with a code of its own.
#pragma once
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace Module_occam {

inline constexpr std::size_t triangles = 4;  // of each cell
inline constexpr char free_code = '?';       // a triangle whose resistivity is inverted for
inline constexpr char air_code = '0';        // air, whatever the mesh lists
inline constexpr char sea_code = 'Z';        // sea water

/// The codes of one row of cells: a line for each triangle, a character for each column of cells. 1 to 9 and
/// A to Y (10 to 34) are indices of the table of fixed resistivities.
using CodeLines = std::array<std::string, triangles>;

struct OccamMesh {
  std::vector<double> node_widths;   // of the columns of cells, left to right, m
  std::vector<double> node_heights;  // of the rows of cells, top down, m
  std::vector<double> fixed_res;     // fixed resistivities, as in the file
  std::vector<CodeLines> mesh_code;  // one for each row of cells

  [[nodiscard]] int columns() const { return static_cast<int>(node_widths.size()); }  // of cells
  [[nodiscard]] int rows() const { return static_cast<int>(node_heights.size()); }    // of cells
  [[nodiscard]] int node_columns() const { return columns() + 1; }                    // node lines across
  [[nodiscard]] int node_rows() const { return rows() + 1; }                          // node lines down
  [[nodiscard]] int num_fixed_res() const { return static_cast<int>(fixed_res.size()); }
  [[nodiscard]] double min_node_width() const;   // m, 0 without columns
  [[nodiscard]] double min_node_height() const;  // m, 0 without rows
};

}  // namespace Module_occam
