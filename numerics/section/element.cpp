#include "numerics/section/element.h"

namespace numerics::section {

Coefficients coefficients(Mode mode, const Cell& cell, const Frequency& frequency) {
  const Complex i_omega_mu = {0.0, frequency.omega_mu()};
  Coefficients result;
  for (std::size_t t = 0; t < cell.size(); ++t) {
    const Complex s = frequency.admittivity(cell[t]);
    if (mode == Mode::te) {
      result.stiffness[t] = 1.0;
      result.mass[t] = product(i_omega_mu, s);
    } else {
      result.stiffness[t] = reciprocal(s);
      result.mass[t] = i_omega_mu;
    }
  }
  return result;
}

CellMatrix cell_matrix(const Coefficients& coefficients, double width, double height) {
  const double flat = width / height;
  const double steep = height / width;
  const double mass_unit = width * height / 48.0;
  // Of a triangle on a horizontal side (top, bottom) and of one on a vertical side (left, right).
  const double same = (flat + steep) / 4.0;
  const std::array<double, 4> between = {(flat - steep) / 4.0, (steep - flat) / 4.0, (flat - steep) / 4.0,
                                         (steep - flat) / 4.0};
  const std::array<double, 4> at_centre = {flat, steep, flat, steep};

  CellMatrix k;
  for (std::size_t t = 0; t < 4; ++t) {
    const auto [first, second] = triangle_corners[t];
    const Complex mass = coefficients.mass[t] * mass_unit;
    const Complex stiffness = coefficients.stiffness[t];
    const Complex diagonal = stiffness * same + 2.0 * mass;
    const Complex coupling = mass - stiffness * (0.5 * at_centre[t]);
    k.corner[first][first] += diagonal;
    k.corner[second][second] += diagonal;
    k.corner[first][second] += stiffness * between[t] + mass;
    k.to_centre[first] += coupling;
    k.to_centre[second] += coupling;
    k.centre += stiffness * at_centre[t] + 2.0 * mass;
  }
  return k;
}

namespace {

// Integrals of N E n_z over the edges of a triangle for its first and second corner and the centre.
std::array<Complex, 3> edge_integrals(const PrimaryField::Row& host, std::size_t triangle, double width) {
  const double half_side = 0.5 * width;
  const double half_diagonal = 0.25 * width;  // of its horizontal projection
  const Complex upper = host.electric[1] * half_diagonal;
  const Complex lower = host.electric[2] * half_diagonal;
  switch (triangle) {
    case top_triangle: {
      const Complex side = host.electric[0] * half_side;
      return {upper - side, upper - side, 2.0 * upper};
    }
    case bottom_triangle: {
      const Complex side = host.electric[3] * half_side;
      return {side - lower, side - lower, -2.0 * lower};
    }
    default:  // a vertical side carries nothing; below the upper diagonal, above the lower one
      return {-upper, lower, lower - upper};
  }
}

}  // namespace

void add_unit_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t triangle, std::size_t column, std::size_t row, Complex factor,
                   CellLoad& load) {
  const PrimaryField::Row& host = primary.rows[row];
  const auto [first, second] = triangle_corners[triangle];
  const double width = mesh.widths[column];
  const double third = width * mesh.heights[row] / 12.0;  // of the triangle's area
  constexpr std::array<std::size_t, 4> centroid = {0, 1, 2, 1};
  const Complex volume = product({0.0, frequency.omega_mu() * third}, host.value[centroid[triangle]]);
  std::array<Complex, 3> unit = {volume, volume, volume};
  if (mesh.mode == Mode::tm) {
    const std::array<Complex, 3> edges = edge_integrals(host, triangle, width);
    for (std::size_t i = 0; i < unit.size(); ++i) {
      unit[i] += edges[i];
    }
  }
  load[first] -= product(factor, unit[0]);
  load[second] -= product(factor, unit[1]);
  load[centre] -= product(factor, unit[2]);
}

CellLoad cell_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t column, std::size_t row) {
  const Cell& cell = mesh.cell(column, row);
  const double host_conductivity = mesh.host_conductivity(row);
  CellLoad load = {};
  for (std::size_t t = 0; t < cell.size(); ++t) {
    if (cell[t] == host_conductivity) {
      continue;  // exactly, so that a layered section has no load at all
    }
    const double difference = cell[t] - host_conductivity;
    const Complex factor =
        mesh.mode == Mode::te ? Complex(difference) : difference * reciprocal(frequency.admittivity(cell[t]));
    add_unit_load(mesh, primary, frequency, t, column, row, factor, load);
  }
  return load;
}

}  // namespace numerics::section
