#include "numerics/section/element.h"

namespace numerics::section {

CellMatrix cell_matrix(const Cell& cell, double width, double height, double omega_mu0) {
  const double flat = width / height;
  const double steep = height / width;
  const double mass_unit = omega_mu0 * width * height / 48.0;
  // Of a triangle on a horizontal side (top, bottom) and of one on a vertical side (left, right).
  const double same = (flat + steep) / 4.0;
  const std::array<double, 4> between = {(flat - steep) / 4.0, (steep - flat) / 4.0, (flat - steep) / 4.0,
                                         (steep - flat) / 4.0};
  const std::array<double, 4> at_centre = {flat, steep, flat, steep};

  CellMatrix k;
  for (std::size_t t = 0; t < 4; ++t) {
    const auto [first, second] = triangle_corners[t];
    const double mass = cell.mass[t] * mass_unit;
    const double stiffness = cell.stiffness[t];
    const Complex diagonal = {stiffness * same, 2.0 * mass};
    const Complex coupling = {-0.5 * stiffness * at_centre[t], mass};
    k.corner[first][first] += diagonal;
    k.corner[second][second] += diagonal;
    k.corner[first][second] += Complex(stiffness * between[t], mass);
    k.to_centre[first] += coupling;
    k.to_centre[second] += coupling;
    k.centre += Complex(stiffness * at_centre[t], 2.0 * mass);
  }
  return k;
}

void add_unit_load(const ModeMesh& mesh, const PrimaryField& primary, double omega_mu0, std::size_t triangle,
                   std::size_t column, std::size_t row, Complex factor, CellLoad& load) {
  const PrimaryField::Row& host = primary.rows[row];
  const auto [first, second] = triangle_corners[triangle];
  const double width = mesh.widths[column];
  const double third = width * mesh.heights[row] / 12.0;  // of the triangle's area
  constexpr std::array<std::size_t, 4> centroid = {0, 1, 2, 1};
  const Complex volume = Complex(0.0, omega_mu0 * third) * host.value[centroid[triangle]];
  if (mesh.mode == Mode::te) {
    load[first] -= factor * volume;
    load[second] -= factor * volume;
    load[centre] -= factor * volume;
    return;
  }
  const Complex inside = volume / host.resistivity;
  const double half_side = 0.5 * width;
  const double half_diagonal = 0.25 * width;  // of its horizontal projection
  std::array<Complex, 3> edges = {};          // integrals of N dH/dn for first, second, centre
  const Complex upper = host.derivative[1] * half_diagonal;
  const Complex lower = host.derivative[2] * half_diagonal;
  switch (triangle) {
    case top_triangle: {
      const Complex side = host.derivative[0] * half_side;
      edges = {upper - side, upper - side, 2.0 * upper};
      break;
    }
    case bottom_triangle: {
      const Complex side = host.derivative[3] * half_side;
      edges = {side - lower, side - lower, -2.0 * lower};
      break;
    }
    default:  // a vertical side carries nothing; below the upper diagonal, above the lower one
      edges = {-upper, lower, lower - upper};
  }
  load[first] -= factor * (edges[0] - inside);
  load[second] -= factor * (edges[1] - inside);
  load[centre] -= factor * (edges[2] - inside);
}

CellLoad cell_load(const ModeMesh& mesh, const PrimaryField& primary, double omega_mu0, std::size_t column,
                   std::size_t row) {
  const Cell& cell = mesh.cell(column, row);
  const bool above_host = row < mesh.host.ground_row;
  const double host_resistivity = primary.rows[row].resistivity;
  CellLoad load = {};
  for (std::size_t t = 0; t < 4; ++t) {
    if (mesh.mode == Mode::te) {
      const double difference = cell.mass[t] - (above_host ? 0.0 : 1.0 / host_resistivity);
      if (difference != 0.0) {
        add_unit_load(mesh, primary, omega_mu0, t, column, row, difference, load);
      }
    } else if (cell.air[t]) {
      continue;
    } else if (above_host) {
      // The primary field is 1 here and no solution of the ground's equation: its whole mass term is load.
      const Complex term = Complex(0.0, omega_mu0 * mesh.widths[column] * mesh.heights[row] / 12.0);
      load[triangle_corners[t][0]] -= term;
      load[triangle_corners[t][1]] -= term;
      load[centre] -= term;
    } else if (cell.stiffness[t] != host_resistivity) {
      add_unit_load(mesh, primary, omega_mu0, t, column, row, cell.stiffness[t] - host_resistivity, load);
    }
  }
  const bool under_a_hill = mesh.mode == Mode::tm && row == mesh.host.ground_row && row > 0 &&
                            !mesh.cell(column, row - 1).air[bottom_triangle];
  if (under_a_hill) {
    // The current that the host's ground line carries, where there is ground above it.
    const Complex current = primary.impedance * (0.5 * mesh.widths[column]);
    load[0] -= current;
    load[1] -= current;
  }
  return load;
}

}  // namespace numerics::section
