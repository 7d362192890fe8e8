#include "numerics/section/mode_mesh.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace numerics::section {

namespace {

double mean_resistivity(const std::vector<double>& resistivities, Mode mode) {
  if (std::adjacent_find(resistivities.begin(), resistivities.end(), std::not_equal_to<>()) ==
      resistivities.end()) {
    return resistivities.front();  // exactly, so that cells like the host have no load at all
  }
  double sum = 0.0;
  for (const double resistivity : resistivities) {
    sum += mode == Mode::te ? 1.0 / resistivity : resistivity;
  }
  const auto count = static_cast<double>(resistivities.size());
  return mode == Mode::te ? count / sum : sum / count;
}

LayeredColumn layered_column(const Section& section, const AirMap& air, std::size_t column, Mode mode) {
  LayeredColumn layers;
  layers.ground_row = air.ground_row(column);
  if (layers.ground_row == section.row_heights.size()) {
    throw std::invalid_argument("column " + std::to_string(column + 1) +
                                " of the mesh is air from top to bottom");
  }
  for (std::size_t row = layers.ground_row; row < section.row_heights.size(); ++row) {
    std::vector<double> ground;
    for (const Triangle t : {top_triangle, left_triangle, bottom_triangle, right_triangle}) {
      if (!air.is_air(column, row, t)) {
        ground.push_back(section.resistivity(column, row, t));
      }
    }
    layers.heights.push_back(section.row_heights[row]);
    layers.resistivity.push_back(mean_resistivity(ground, mode));
  }
  return layers;
}

Cell make_cell(const Section& section, const AirMap& air, std::size_t column, std::size_t row, Mode mode) {
  Cell cell;
  for (const Triangle t : {top_triangle, left_triangle, bottom_triangle, right_triangle}) {
    const double resistivity = section.resistivity(column, row, t);
    cell.air[t] = air.is_air(column, row, t);
    if (mode == Mode::te) {
      cell.stiffness[t] = 1.0;
      cell.mass[t] = cell.air[t] ? 0.0 : 1.0 / resistivity;
    } else if (!cell.air[t]) {
      cell.stiffness[t] = resistivity;
      cell.mass[t] = 1.0;
    }
  }
  return cell;
}

std::vector<double> positions(double first, const std::vector<double>& steps) {
  std::vector<double> at = {first};
  for (const double step : steps) {
    at.push_back(at.back() + step);
  }
  return at;
}

}  // namespace

std::vector<double> air_rows(double first_height) {
  constexpr double top_of_air = 1e5;  // m
  constexpr double largest_growth = 2.75;
  constexpr std::size_t min_rows = 9;
  const auto height_of = [first_height](std::size_t rows, double growth) {
    double sum = 0.0;
    for (std::size_t row = 0; row < rows; ++row) {
      sum = sum * growth + first_height;
    }
    return sum;
  };
  std::size_t rows = min_rows;
  while (height_of(rows, largest_growth) < top_of_air) {
    ++rows;
  }
  double low = 1.0;  // a first row above 11 km thick ends higher up instead of shrinking
  double high = largest_growth;
  constexpr int halvings = 60;  // more than the digits of a double
  for (int i = 0; i < halvings; ++i) {
    const double middle = 0.5 * (low + high);
    (height_of(rows, middle) < top_of_air ? low : high) = middle;
  }
  std::vector<double> heights = {first_height};
  while (heights.size() < rows) {
    heights.push_back(heights.back() * low);
  }
  return heights;
}

ModeMesh make_mode_mesh(const Section& section, const AirMap& air, Mode mode) {
  ModeMesh mesh;
  mesh.mode = mode;
  mesh.columns = section.column_widths.size();
  mesh.widths = section.column_widths;
  mesh.heights = section.row_heights;
  if (mode == Mode::te) {
    const std::vector<double> added = air_rows(section.row_heights.front());
    mesh.heights.insert(mesh.heights.begin(), added.rbegin(), added.rend());
    mesh.added_rows = added.size();
  }
  mesh.rows = mesh.heights.size();
  mesh.node_y = positions(section.left_edge, mesh.widths);
  mesh.node_z = positions(0.0, mesh.heights);
  const double ground = mesh.node_z[mesh.added_rows];
  for (double& z : mesh.node_z) {
    z -= ground;
  }
  const Cell air_cell = {.stiffness = {1.0, 1.0, 1.0, 1.0}, .mass = {}, .air = {true, true, true, true}};
  mesh.cells.assign(mesh.columns * mesh.rows, air_cell);
  mesh.touches_air.assign((mesh.columns + 1) * (mesh.rows + 1), 0);
  for (std::size_t column = 0; column <= mesh.columns; ++column) {
    for (std::size_t row = 0; row <= section.row_heights.size(); ++row) {
      mesh.touches_air[mesh.node(column, mesh.added_rows + row)] =
          static_cast<std::uint8_t>(air.node_touches_air(column, row));
      if (column < mesh.columns && row < section.row_heights.size()) {
        mesh.cells[column * mesh.rows + mesh.added_rows + row] = make_cell(section, air, column, row, mode);
      }
    }
  }
  mesh.host = layered_column(section, air, 0, mode);
  mesh.right = layered_column(section, air, mesh.columns - 1, mode);
  mesh.host.ground_row += mesh.added_rows;
  mesh.right.ground_row += mesh.added_rows;
  return mesh;
}

}  // namespace numerics::section
