#include "numerics/section/ground_impedance.h"

#include <cmath>

namespace numerics::section {

namespace {

// dF/dz of the host at the site
Complex host_derivative(const ModeField& field, const Site& site) {
  const ModeMesh& mesh = field.mesh();
  const LayeredField::Value host = field.primary().nodes[site.row + mesh.added_rows];
  if (mesh.mode == Mode::te) {
    return -product({0.0, field.frequency().omega_mu()}, host.magnetic);
  }
  return -product(field.primary().rows[site.row_beside + mesh.added_rows].admittivity, host.electric);
}

double conductivity_beside(const Section& section, const Site& site) {
  return section.codes[site.triangle_beside] == air_code ? air_conductivity
                                                         : 1.0 / section.resistivities[site.triangle_beside];
}

}  // namespace

GroundImpedance ground_impedance(const ModeField& field, const Section& section, const Site& site) {
  const ModeMesh& mesh = field.mesh();
  const std::size_t row = site.row + mesh.added_rows;
  const double cosine = std::cos(site.slope);
  const double sine = std::sin(site.slope);

  GroundImpedance result;
  result.node = mesh.node(site.column, row);
  result.derivative = host_derivative(field, site) * cosine;
  for (std::size_t i = 0; i < site.down.size(); ++i) {
    const auto weigh = [&](std::size_t at, const NodeWeight& node, double share) {
      result.weights[at] = {mesh.node(node.column, node.row + mesh.added_rows), share * node.weight};
      result.derivative += share * node.weight * field.secondary(node.column, node.row + mesh.added_rows);
    };
    weigh(i, site.down[i], cosine);
    weigh(i + site.down.size(), site.along[i], -sine);
  }
  const LayeredField::Value host = field.primary().nodes[row];
  result.field = (mesh.mode == Mode::te ? host.electric : host.magnetic) + field.secondary(site.column, row);
  result.admittivity = field.frequency().admittivity(conductivity_beside(section, site));
  result.impedance = mesh.mode == Mode::te
                         ? -Complex(0.0, field.frequency().omega_mu()) * result.field / result.derivative
                         : -result.derivative / (result.admittivity * result.field);
  return result;
}

}  // namespace numerics::section
