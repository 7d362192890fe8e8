// section.h: a two-dimensional section of the ground on a mesh of rectangles, each cut into four triangles
// that meet in its middle.
//
// y runs along the line, z down, both m; resistivity ohm-m; indices are 0-based; columns count from the left,
// rows from the top of the mesh.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace numerics::section {

/// Order of the triangles of a cell, also that of the four code lines of a mesh row.
enum Triangle : std::size_t { top_triangle, left_triangle, bottom_triangle, right_triangle };

struct Section {
  double left_edge = 0.0;             // m, y of the left-most node column
  std::vector<double> column_widths;  // m, > 0
  std::vector<double> row_heights;    // m, > 0
  std::vector<double> resistivities;  // ohm-m, > 0, of triangle t of a cell: [4 (row * columns + column) + t]

  [[nodiscard]] double resistivity(std::size_t column, std::size_t row, std::size_t triangle) const {
    return resistivities[4 * (row * column_widths.size() + column) + triangle];
  }
};

/// Throws std::invalid_argument, with the place, for a section that has fewer than two columns or three rows,
/// numbers that are not positive and finite, or counts that don't fit.
void check_section(const Section& section);

/// Resistivities of triangles that are given as entries of a table: first the fixed resistivities, then the
/// free parameters.
/// @param table_index  of each triangle: 0 to F - 1 is a fixed resistivity; F + p, p from 1, is free
///                     parameter number p. With no fixed resistivities 0 is air: some programs write it so.
/// @param fixed_resistivities  ohm-m, F values
/// @param log10_parameters     log10 ohm-m
/// @return ohm-m; throws std::invalid_argument for an index beyond the table
std::vector<double> triangle_resistivities(std::span<const std::int32_t> table_index,
                                           std::span<const double> fixed_resistivities,
                                           std::span<const double> log10_parameters);

/// The node column nearest to a position, the right one of two equally near: this is where a response belongs
/// to, also when that column is the edge of a block. Throws std::invalid_argument for a position outside the
/// mesh.
/// @param y  m
std::size_t nearest_node_column(const Section& section, double y);

/// Which triangles are air: at least 1e7 ohm-m and nothing but air above. A resistor that ground covers is
/// none.
class AirMap {
 public:
  explicit AirMap(const Section& section);

  [[nodiscard]] bool is_air(std::size_t column, std::size_t row, std::size_t triangle) const {
    return ((mask_[row * columns_ + column] >> triangle) & 1U) != 0;
  }
  /// The first row of a column that is not all air; the number of rows if there is none.
  [[nodiscard]] std::size_t ground_row(std::size_t column) const { return ground_row_[column]; }
  /// True if a triangle around the node is air; the space above the mesh doesn't count.
  [[nodiscard]] bool node_touches_air(std::size_t node_column, std::size_t node_row) const {
    return node_touches_air_[node_row * (columns_ + 1) + node_column] != 0;
  }

 private:
  std::size_t columns_;
  std::vector<std::uint8_t> mask_;  // of each cell, a bit for each triangle
  std::vector<std::size_t> ground_row_;
  std::vector<std::uint8_t> node_touches_air_;
};

/// Where a site on a node column is.
struct SurfaceNode {
  std::size_t column = 0;
  std::size_t row = 0;  // first node row with ground to its left or right
  std::size_t triangle_index =
      0;                     // of the ground at the surface right of the node, left of it where there is none
  double resistivity = 0.0;  // ohm-m, of that triangle
  bool on_a_step = false;    // a vertical wall of ground begins at the node
};

/// Throws std::invalid_argument where the ground is missing or ends less than two rows further down.
SurfaceNode surface_node(const Section& section, const AirMap& air, std::size_t node_column);

}  // namespace numerics::section
