#include "numerics/section/site.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <stdexcept>
#include <string>

namespace numerics::section {

namespace {

bool is_open(Code code) { return code == air_code || code == sea_code; }

// The cells at one side of a node: right of it, or left of it in a mirror.
class Side {
 public:
  /// @param row  of the cells below the node
  Side(const Section& section, std::size_t node_column, std::size_t row, bool right)
      : section_(section), row_(row), right_(right) {
    exists_ = right ? node_column < section.columns() : node_column > 0;
    column_ = right || !exists_ ? node_column : node_column - 1;
    has_next_ = right ? node_column + 1 < section.columns() : node_column > 1;
  }

  [[nodiscard]] bool exists() const { return exists_; }
  [[nodiscard]] bool has_next() const { return has_next_; }  // a further cell behind this one
  [[nodiscard]] double width() const { return section_.column_widths[column_]; }
  [[nodiscard]] double next_width() const { return section_.column_widths[next_column()]; }
  [[nodiscard]] Triangle facing() const { return right_ ? left_triangle : right_triangle; }
  [[nodiscard]] std::size_t index(std::size_t row) const { return section_.index(column_, row, facing()); }
  /// Code of a triangle in the row of the cell below the node.
  [[nodiscard]] Code code(std::size_t triangle) const { return section_.code(column_, row_, triangle); }
  [[nodiscard]] Code facing_code(std::size_t row) const { return section_.code(column_, row, facing()); }
  [[nodiscard]] Code above(std::size_t triangle) const {
    return row_ == 0 ? air_code : section_.code(column_, row_ - 1, triangle);
  }
  /// Whether the next cell has the same code in the triangle; of the site's row, or of the row above.
  [[nodiscard]] bool next_is_alike(std::size_t triangle, bool above) const {
    const std::size_t row = above ? row_ - 1 : row_;
    return section_.code(column_, row, triangle) == section_.code(next_column(), row, triangle);
  }

 private:
  [[nodiscard]] std::size_t next_column() const { return right_ ? column_ + 1 : column_ - 1; }

  const Section& section_;
  std::size_t row_;
  bool right_;
  bool exists_ = false;
  bool has_next_ = false;
  std::size_t column_ = 0;
};

// Weights of the derivative at 0 of the parabola through the places 0, a and b: de Lugao & Wannamaker (1996),
// Geophys. J. Int. 127, 806-810.
std::array<double, 3> parabola(double a, double b) {
  return {-(a + b) / (a * b), b / (a * (b - a)), -a / (b * (b - a))};
}

// The first row in which the triangles at both sides of the site's line are neither both air nor both sea.
std::optional<std::size_t> ground_row(const Section& section, std::size_t node_column) {
  const std::size_t inner = std::clamp<std::size_t>(node_column, 1, section.columns() - 1);
  for (std::size_t row = 0; row < section.rows(); ++row) {
    const Code left = section.code(inner - 1, row, right_triangle);
    const Code right = section.code(inner, row, left_triangle);
    if (left != right || !is_open(left)) {
      return row;
    }
  }
  return std::nullopt;
}

// The direction, from straight up to its own side, in which the ground ends at one side of a node; the last
// line that holds counts.
double end_of_ground(const Section& section, const Side& side, const Side& other, std::size_t row) {
  constexpr double level = std::numbers::pi / 2.0;
  constexpr double wall = std::numbers::pi;
  double direction = 0.0;
  if (is_open(side.above(side.facing())) && !is_open(side.above(bottom_triangle))) {
    direction = std::atan2(side.width(), section.row_heights[row - 1]);
  }
  if (is_open(side.above(bottom_triangle)) && !is_open(side.code(top_triangle))) {
    direction = level;
  }
  if (is_open(side.code(top_triangle)) && !is_open(side.code(side.facing()))) {
    direction = std::atan2(side.width(), -section.row_heights[row]);
  }
  if (is_open(side.code(side.facing())) && !is_open(other.code(other.facing()))) {
    direction = wall;
  }
  return direction;
}

// d/dy through the site and the two nodes at one side, taken at the far one; where the next cell is of
// another block, from the site and its neighbour.
Derivative to_one_side(const Side& side, bool right, bool alike, std::size_t column, std::size_t row) {
  const double sign = right ? 1.0 : -1.0;
  const auto node = [&](std::size_t steps) { return right ? column + steps : column - steps; };
  if (!side.has_next() || !alike) {
    return {{{node(1), row, sign / side.width()}, {column, row, -sign / side.width()}, {column, row, 0.0}}};
  }
  const auto weights = parabola(side.next_width(), side.next_width() + side.width());
  return {{{node(2), row, -sign * weights[0]},
           {node(1), row, -sign * weights[1]},
           {column, row, -sign * weights[2]}}};
}

Derivative along_the_line(const Side& left, const Side& right, bool sea_floor, std::size_t column,
                          std::size_t row) {
  const Triangle triangle = sea_floor ? bottom_triangle : top_triangle;
  const bool from_left = sea_floor ? left.above(triangle) == sea_code : left.code(triangle) != air_code;
  const bool from_right = sea_floor ? right.above(triangle) == sea_code : right.code(triangle) != air_code;
  if (from_left && !from_right) {
    return to_one_side(left, false, left.has_next() && left.next_is_alike(triangle, sea_floor), column, row);
  }
  if (from_right && !from_left) {
    return to_one_side(right, true, right.has_next() && right.next_is_alike(triangle, sea_floor), column,
                       row);
  }
  const auto weights = parabola(-left.width(), right.width());
  return {{{column, row, weights[0]}, {column - 1, row, weights[1]}, {column + 1, row, weights[2]}}};
}

// d/dz by a parabola through the site and the two nodes below it, or above it on a sea floor; the secondary
// field bends where the block changes, so there two nodes have to do.
Derivative down_the_column(const Section& section, const std::array<Side, 2>& sides, const Site& site,
                           bool sea_floor) {
  const std::size_t near = site.row_beside;
  const std::size_t far = sea_floor ? near - 1 : near + 1;
  const bool changes = std::ranges::any_of(sides, [&](const Side& side) {
    return side.exists() && side.facing_code(near) != side.facing_code(far);
  });
  const double step = section.row_heights[near];
  const double next_step = section.row_heights[far];
  if (!sea_floor) {
    const auto weights =
        changes ? std::array{-1.0 / step, 1.0 / step, 0.0} : parabola(step, step + next_step);
    return {{{site.column, site.row, weights[0]},
             {site.column, site.row + 1, weights[1]},
             {site.column, site.row + 2, weights[2]}}};
  }
  // A sea of one row: sign and pair of nodes are the inversion's.
  const auto weights =
      changes ? std::array{0.0, -1.0 / step, 1.0 / step} : parabola(-step, -step - next_step);
  return {{{site.column, site.row, weights[0]},
           {site.column, site.row - 1, weights[1]},
           {site.column, site.row - 2, weights[2]}}};
}

}  // namespace

Site make_site(const Section& section, std::size_t node_column) {
  const std::string name = "node column " + std::to_string(node_column + 1);
  const std::optional<std::size_t> row = ground_row(section, node_column);
  if (!row) {
    throw std::invalid_argument(name + " has no ground");
  }
  Site site = {.column = node_column, .row = *row};
  if (site.row + 2 > section.rows()) {
    throw std::invalid_argument(name + " has less than two rows of ground");
  }
  const std::array<Side, 2> sides = {Side(section, node_column, site.row, false),
                                     Side(section, node_column, site.row, true)};
  const bool sea_floor = std::ranges::any_of(
      sides, [](const Side& side) { return side.exists() && side.above(bottom_triangle) == sea_code; });
  if (sea_floor && site.row < 2) {
    throw std::invalid_argument(name + " lies under sea water of one row at the top of the mesh");
  }
  site.row_beside = sea_floor ? site.row - 1 : site.row;
  site.triangle_beside = (sides[1].exists() ? sides[1] : sides[0]).index(site.row_beside);
  site.down = down_the_column(section, sides, site, sea_floor);
  if (const auto& [left, right] = sides; left.exists() && right.exists()) {
    site.slope =
        0.5 * (end_of_ground(section, right, left, site.row) - end_of_ground(section, left, right, site.row));
    site.along = along_the_line(left, right, sea_floor, site.column, site.row);
    site.on_a_wall = stands_on_a_wall(section, node_column);
  }
  return site;
}

bool stands_on_a_wall(const Section& section, std::size_t node_column) {
  const std::optional<std::size_t> row = ground_row(section, node_column);
  return row && node_column > 0 && node_column < section.columns() &&
         is_open(section.code(node_column - 1, *row, right_triangle)) !=
             is_open(section.code(node_column, *row, left_triangle));
}

}  // namespace numerics::section
