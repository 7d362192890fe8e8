// section.h: a two-dimensional section of the ground on a mesh of rectangles, each cut into four triangles
// that meet in its middle.
//
// y runs along the line, z down, both m; resistivity ohm-m; indices are 0-based; columns count from the left,
// rows from the top of the mesh.
#pragma once
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "numerics/section/electromagnetic.h"

namespace numerics::section {

/// Order of the triangles of a cell, also that of the four code lines of a mesh row.
enum Triangle : std::size_t { top_triangle, left_triangle, bottom_triangle, right_triangle };

/// What a triangle is made of: air, sea water, or an entry of a table of resistivities, from 1. What is air,
/// where a layer begins and which cells are one block goes by codes, never by resistivities: a resistor is no
/// air, and two blocks of equal resistivity are two.
using Code = std::int32_t;
constexpr Code air_code = 0;
constexpr Code sea_code = -1;

struct Section {
  double left_edge = 0.0;             // m, y of the left-most node column
  std::vector<double> column_widths;  // m, > 0
  std::vector<double> row_heights;    // m, > 0
  std::vector<double> resistivities;  // ohm-m, > 0, of triangle t of a cell: [4 (row * columns + column) + t]
  std::vector<Code> codes;            // of each triangle, in the same order
  /// Layers that the host may have, those of the model's blocks; below the last one the host is as the
  /// bottom row of the mesh.
  std::size_t host_layers = std::numeric_limits<std::size_t>::max();

  [[nodiscard]] std::size_t columns() const { return column_widths.size(); }
  [[nodiscard]] std::size_t rows() const { return row_heights.size(); }
  [[nodiscard]] std::size_t index(std::size_t column, std::size_t row, std::size_t triangle) const {
    return 4 * (row * columns() + column) + triangle;
  }
  [[nodiscard]] double resistivity(std::size_t column, std::size_t row, std::size_t triangle) const {
    return resistivities[index(column, row, triangle)];
  }
  [[nodiscard]] Code code(std::size_t column, std::size_t row, std::size_t triangle) const {
    return codes[index(column, row, triangle)];
  }
  [[nodiscard]] bool is_air(std::size_t column, std::size_t row, std::size_t triangle) const {
    return code(column, row, triangle) == air_code;
  }
};

/// Throws std::invalid_argument, with the place, for a section that has fewer than two columns or three rows,
/// numbers that are not positive and finite, or counts that don't fit.
void check_section(const Section& section);

/// Whether resistivities far from those of rocks are cut, as the inversion does while it computes a response:
/// once a free parameter lies above 1e8 ohm-m everything above it is 1e8 ohm-m, once one lies below 1e-6
/// everything below is 1e-6. Air is none of them.
enum class ResistivityLimits : std::uint8_t { kept, cut };

/// The resistivities of triangles from their codes: air, sea water, then the fixed resistivities from 1 on
/// and behind them the free parameters.
/// @param fixed_resistivities  ohm-m
/// @param log10_parameters     log10 ohm-m
/// @return ohm-m; throws std::invalid_argument for a code beyond the table
std::vector<double> triangle_resistivities(std::span<const Code> codes,
                                           std::span<const double> fixed_resistivities,
                                           std::span<const double> log10_parameters,
                                           ResistivityLimits limits = ResistivityLimits::cut);

/// The node column nearest to a position, the right one of two equally near: this is where a response belongs
/// to, also when that column is the edge of a block. Throws std::invalid_argument for a position outside the
/// mesh.
/// @param y  m
std::size_t nearest_node_column(const Section& section, double y);

}  // namespace numerics::section
