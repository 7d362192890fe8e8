#include "numerics/section/section.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/number_text.h"

namespace numerics::section {

namespace {

constexpr double min_air_resistivity = 1e7;  // ohm-m; no rock at the surface comes near it
constexpr double air_resistivity = 1e12;     // ohm-m, of air that no table gives a value

[[noreturn]] void fail(const std::string& what) { throw std::invalid_argument(what); }

bool is_positive(double value) { return std::isfinite(value) && value > 0.0; }

void check_positive(std::string_view name, std::span<const double> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!is_positive(values[i])) {
      fail("mesh " + std::string(name) + " " + std::to_string(i + 1) + " is " + plain_text(values[i]));
    }
  }
}

}  // namespace

void check_section(const Section& section) {
  if (section.column_widths.size() < 2 || section.row_heights.size() < 3) {
    fail("a mesh needs at least two columns and three rows of cells");
  }
  if (!std::isfinite(section.left_edge)) {
    fail("the position of the mesh is not a number");
  }
  check_positive("column", section.column_widths);
  check_positive("row", section.row_heights);
  const std::size_t columns = section.column_widths.size();
  if (section.resistivities.size() != 4 * columns * section.row_heights.size()) {
    fail("the number of resistivities doesn't fit the mesh");
  }
  const auto bad = std::find_if_not(section.resistivities.begin(), section.resistivities.end(), is_positive);
  if (bad != section.resistivities.end()) {
    const auto cell = static_cast<std::size_t>(bad - section.resistivities.begin()) / 4;
    fail("the resistivity of row " + std::to_string(cell / columns + 1) + ", column " +
         std::to_string(cell % columns + 1) + " is " + plain_text(*bad));
  }
}

std::vector<double> triangle_resistivities(std::span<const std::int32_t> table_index,
                                           std::span<const double> fixed_resistivities,
                                           std::span<const double> log10_parameters) {
  const std::size_t fixed = fixed_resistivities.size();
  const auto resistivity = [&](std::int32_t signed_index) {
    const auto index = static_cast<std::size_t>(std::max<std::int32_t>(signed_index, 0));
    if (signed_index >= 0 && index < fixed) {
      return fixed_resistivities[index];
    }
    if (signed_index == 0) {
      return air_resistivity;
    }
    if (signed_index < 0 || index == fixed || index - fixed > log10_parameters.size()) {
      fail("the mesh names resistivity " + std::to_string(signed_index) + " of a table of " +
           std::to_string(fixed) + " fixed and " + std::to_string(log10_parameters.size()) + " free ones");
    }
    return std::pow(10.0, log10_parameters[index - fixed - 1]);
  };
  std::vector<double> values(table_index.size());
  std::transform(table_index.begin(), table_index.end(), values.begin(), resistivity);
  return values;
}

std::size_t nearest_node_column(const Section& section, double y) {
  const double width = std::accumulate(section.column_widths.begin(), section.column_widths.end(), 0.0);
  if (!(y >= section.left_edge && y <= section.left_edge + width)) {
    fail("position " + plain_text(y) + " m lies outside the mesh, which spans " +
         plain_text(section.left_edge) + " to " + plain_text(section.left_edge + width) + " m");
  }
  double node = section.left_edge;
  for (std::size_t column = 0; column < section.column_widths.size(); ++column) {
    const double next = node + section.column_widths[column];
    if (y < next) {
      return y - node < next - y ? column : column + 1;
    }
    node = next;
  }
  return section.column_widths.size();
}

AirMap::AirMap(const Section& section)
    : columns_(section.column_widths.size()),
      mask_(columns_ * section.row_heights.size(), 0),
      ground_row_(columns_, section.row_heights.size()),
      node_touches_air_((columns_ + 1) * (section.row_heights.size() + 1), 0) {
  constexpr unsigned all = 15;
  for (std::size_t column = 0; column < columns_; ++column) {
    bool air_above = true;
    for (std::size_t row = 0; row < section.row_heights.size() && air_above; ++row) {
      const auto resists = [&](Triangle t) {
        return section.resistivity(column, row, t) >= min_air_resistivity;
      };
      const bool top = resists(top_triangle);
      const bool left = top && resists(left_triangle);
      const bool right = top && resists(right_triangle);
      const bool bottom = left && right && resists(bottom_triangle);
      const unsigned mask = (top ? 1U << top_triangle : 0U) | (left ? 1U << left_triangle : 0U) |
                            (bottom ? 1U << bottom_triangle : 0U) | (right ? 1U << right_triangle : 0U);
      mask_[row * columns_ + column] = static_cast<std::uint8_t>(mask);
      if (mask != all && ground_row_[column] == section.row_heights.size()) {
        ground_row_[column] = row;
      }
      const auto touch = [&](std::size_t node_column, std::size_t node_row) {
        node_touches_air_[node_row * (columns_ + 1) + node_column] = 1;
      };
      if (top) {
        touch(column, row);
        touch(column + 1, row);
      }
      if (left) {
        touch(column, row + 1);
      }
      if (right) {
        touch(column + 1, row + 1);
      }
      air_above = bottom;
    }
  }
}

SurfaceNode surface_node(const Section& section, const AirMap& air, std::size_t node_column) {
  const std::size_t columns = section.column_widths.size();
  struct Neighbour {
    std::size_t column;
    Triangle triangle;
  };
  // Triangles that meet in the node from below, those at the right first.
  std::vector<Neighbour> neighbours;
  if (node_column < columns) {
    neighbours.insert(neighbours.end(), {{node_column, top_triangle}, {node_column, left_triangle}});
  }
  if (node_column > 0) {
    neighbours.insert(neighbours.end(), {{node_column - 1, top_triangle}, {node_column - 1, right_triangle}});
  }
  const std::string name = "node column " + std::to_string(node_column + 1);
  for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
    const auto ground = std::find_if(neighbours.begin(), neighbours.end(), [&](const Neighbour& neighbour) {
      return !air.is_air(neighbour.column, row, neighbour.triangle);
    });
    if (ground == neighbours.end()) {
      continue;
    }
    if (row + 2 > section.row_heights.size()) {
      fail(name + " has less than two rows of ground");
    }
    const bool inside = node_column > 0 && node_column < columns;
    return {.column = node_column,
            .row = row,
            .triangle_index = 4 * (row * columns + ground->column) + ground->triangle,
            .resistivity = section.resistivity(ground->column, row, ground->triangle),
            .on_a_step = inside && air.is_air(node_column, row, left_triangle) !=
                                       air.is_air(node_column - 1, row, right_triangle)};
  }
  fail(name + " has no ground");
}

}  // namespace numerics::section
