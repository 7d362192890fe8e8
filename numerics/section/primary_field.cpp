#include "numerics/section/primary_field.h"

#include <cstddef>

namespace numerics::section {

namespace {

constexpr std::array<double, 3> value_places = {1.0 / 6.0, 1.0 / 2.0, 5.0 / 6.0};
constexpr std::array<double, 4> electric_places = {0.0, 1.0 / 4.0, 3.0 / 4.0, 1.0};

class HostField {
 public:
  HostField(const ModeMesh& mesh, const Frequency& frequency)
      : mesh_(mesh),
        field_(frequency, mesh.host.heights, mesh.host.conductivity),
        ground_(mesh.node_z[mesh.host.ground_row]) {}

  [[nodiscard]] LayeredField::Value at_node(std::size_t row) const {
    return row < mesh_.host.ground_row ? field_.above(ground_ - mesh_.node_z[row])
                                       : field_.at_node(row - mesh_.host.ground_row);
  }
  /// At a share of a row's height.
  [[nodiscard]] LayeredField::Value inside(std::size_t row, double place) const {
    const double depth = place * mesh_.heights[row];
    return row < mesh_.host.ground_row ? field_.above(ground_ - mesh_.node_z[row] - depth)
                                       : field_.inside(row - mesh_.host.ground_row, depth);
  }

 private:
  const ModeMesh& mesh_;
  LayeredField field_;
  double ground_;
};

}  // namespace

PrimaryField primary_field(const ModeMesh& mesh, const Frequency& frequency) {
  const HostField host(mesh, frequency);
  PrimaryField primary;
  primary.rows.resize(mesh.rows);
  for (std::size_t row = 0; row < mesh.rows; ++row) {
    PrimaryField::Row& result = primary.rows[row];
    result.admittivity = frequency.admittivity(mesh.host_conductivity(row));
    for (std::size_t i = 0; i < value_places.size(); ++i) {
      const LayeredField::Value value = host.inside(row, value_places[i]);
      result.value[i] = mesh.mode == Mode::te ? value.electric : value.magnetic;
    }
    for (std::size_t i = 0; i < electric_places.size(); ++i) {
      result.electric[i] = host.inside(row, electric_places[i]).electric;
    }
    primary.nodes.push_back(host.at_node(row));
  }
  primary.nodes.push_back(host.at_node(mesh.rows));
  return primary;
}

}  // namespace numerics::section
