#include "numerics/section/primary_field.h"

#include <cstddef>

namespace numerics::section {

namespace {

constexpr std::array<double, 3> value_places = {1.0 / 6.0, 1.0 / 2.0, 5.0 / 6.0};
constexpr std::array<double, 4> derivative_places = {0.0, 1.0 / 4.0, 3.0 / 4.0, 1.0};

std::vector<Complex> at_nodes(const ModeMesh& mesh, const LayeredColumn& column, const LayeredField& field,
                              double omega_mu0) {
  const double ground = mesh.node_z[column.ground_row];
  std::vector<Complex> values(mesh.rows + 1, 1.0);
  for (std::size_t row = 0; row <= mesh.rows; ++row) {
    if (row >= column.ground_row) {
      const std::size_t layer = row - column.ground_row;
      values[row] = mesh.mode == Mode::te ? field.electric(layer) : field.magnetic(layer) * field.impedance();
    } else if (mesh.mode == Mode::te) {
      values[row] = 1.0 - Complex(0.0, omega_mu0) * field.magnetic(0) * (mesh.node_z[row] - ground);
    }
  }
  return values;
}

PrimaryField::Row air_row(const ModeMesh& mesh, const LayeredField& field, double omega_mu0,
                          std::size_t row) {
  PrimaryField::Row result;
  const double top = mesh.node_z[row] - mesh.node_z[mesh.host.ground_row];
  const Complex slope = mesh.mode == Mode::te ? -Complex(0.0, omega_mu0) * field.magnetic(0) : Complex(0.0);
  for (std::size_t i = 0; i < value_places.size(); ++i) {
    result.value[i] = 1.0 + slope * (top + value_places[i] * mesh.heights[row]);
  }
  result.derivative.fill(slope);
  return result;
}

PrimaryField::Row ground_row(const ModeMesh& mesh, const LayeredField& field, double omega_mu0,
                             std::size_t row) {
  PrimaryField::Row result;
  const std::size_t layer = row - mesh.host.ground_row;
  result.resistivity = mesh.host.resistivity[layer];
  const Complex h_scale = field.impedance();  // H is 1 at the ground in TM
  for (std::size_t i = 0; i < value_places.size(); ++i) {
    const LayeredField::Value value = field.inside(layer, value_places[i] * mesh.heights[row]);
    result.value[i] = mesh.mode == Mode::te ? value.electric : value.magnetic * h_scale;
  }
  for (std::size_t i = 0; i < derivative_places.size(); ++i) {
    const LayeredField::Value value = field.inside(layer, derivative_places[i] * mesh.heights[row]);
    result.derivative[i] = mesh.mode == Mode::te ? -Complex(0.0, omega_mu0) * value.magnetic
                                                 : -value.electric * h_scale / result.resistivity;
  }
  return result;
}

}  // namespace

std::vector<Complex> primary_at_nodes(const ModeMesh& mesh, const LayeredColumn& column, double frequency) {
  const double omega_mu0 = omega_mu(frequency);
  return at_nodes(mesh, column, LayeredField(omega_mu0, column.heights, column.resistivity), omega_mu0);
}

PrimaryField primary_field(const ModeMesh& mesh, double frequency) {
  const double omega_mu0 = omega_mu(frequency);
  const LayeredField field(omega_mu0, mesh.host.heights, mesh.host.resistivity);
  PrimaryField primary;
  primary.node = at_nodes(mesh, mesh.host, field, omega_mu0);
  primary.impedance = field.impedance();
  for (std::size_t row = 0; row < mesh.rows; ++row) {
    primary.rows.push_back(row < mesh.host.ground_row ? air_row(mesh, field, omega_mu0, row)
                                                      : ground_row(mesh, field, omega_mu0, row));
    primary.node_derivative.push_back(primary.rows.back().derivative.front());
  }
  return primary;
}

}  // namespace numerics::section
