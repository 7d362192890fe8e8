#include "numerics/section/element.h"

namespace numerics::section {

Coefficient coefficient(Mode mode, double conductivity, const Frequency& frequency) {
  const Complex i_omega_mu = {0.0, frequency.omega_mu()};
  const Complex s = frequency.admittivity(conductivity);
  return mode == Mode::te ? Coefficient{1.0, product(i_omega_mu, s)} : Coefficient{reciprocal(s), i_omega_mu};
}

Coefficients coefficients(Mode mode, const Cell& cell, const Frequency& frequency) {
  Coefficients result;
  for (std::size_t t = 0; t < cell.size(); ++t) {
    result[t] = coefficient(mode, cell[t], frequency);
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
    const Complex mass = coefficients[t].mass * mass_unit;
    const Complex stiffness = coefficients[t].stiffness;
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

EvenCellMatrix even_cell_matrix(const Coefficient& coefficient, double width, double height) {
  const double flat = width / height;
  const double steep = height / width;
  const Complex stiffness = coefficient.stiffness;
  const Complex unit = coefficient.mass * (width * height / 48.0);
  const Complex side = stiffness * ((flat - steep) / 4.0);
  return {stiffness * ((flat + steep) / 2.0) + 4.0 * unit, unit + side, unit - side,
          2.0 * unit - stiffness * ((flat + steep) / 2.0), stiffness * (2.0 * (flat + steep)) + 8.0 * unit};
}

void EvenCellMatrix::subtract_product(const CellLoad& field, CellLoad& load) const {
  const Complex from_centre = product(to_centre, field[section::centre]);
  Complex sum;
  for (std::size_t i = 0; i < corners; ++i) {
    load[i] -= product(diagonal, field[i]) + product(across, field[i ^ 1U]) + product(down, field[i ^ 2U]) +
               from_centre;
    sum += field[i];
  }
  load[section::centre] -= product(to_centre, sum) + product(centre, field[section::centre]);
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
                   std::size_t triangle, std::size_t row, double width, const Complex& factor,
                   CellLoad& load) {
  const PrimaryField::Row& host = primary.rows[row];
  const auto [first, second] = triangle_corners[triangle];
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

std::vector<CellLoad> even_unit_loads(const ModeMesh& mesh, const PrimaryField& primary,
                                      const Frequency& frequency) {
  std::vector<CellLoad> loads(mesh.rows);
  for (std::size_t row = 0; row < mesh.rows; ++row) {
    for (std::size_t triangle = 0; triangle < triangle_corners.size(); ++triangle) {
      add_unit_load(mesh, primary, frequency, triangle, row, 1.0, 1.0, loads[row]);
    }
  }
  return loads;
}

Complex load_factor(const ModeMesh& mesh, const Frequency& frequency, double conductivity, std::size_t row) {
  const double difference = conductivity - mesh.host_conductivity(row);
  return mesh.mode == Mode::te ? Complex(difference)
                               : difference * reciprocal(frequency.admittivity(conductivity));
}

CellLoad cell_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t column, std::size_t row) {
  const Cell& cell = mesh.cell(column, row);
  CellLoad load = {};
  for (std::size_t t = 0; t < cell.size(); ++t) {
    if (cell[t] != mesh.host_conductivity(row)) {  // exactly, so that a layered section has no load at all
      add_unit_load(mesh, primary, frequency, t, row, mesh.widths[column],
                    load_factor(mesh, frequency, cell[t], row), load);
    }
  }
  return load;
}

}  // namespace numerics::section
