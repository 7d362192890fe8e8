#include "numerics/section/ground_impedance.h"

namespace numerics::section {

GroundImpedance ground_impedance(const ModeField& field, const SurfaceNode& site) {
  const ModeMesh& mesh = field.mesh();
  const PrimaryField& primary = field.primary();
  const std::size_t row = site.row + mesh.added_rows;
  const double a = mesh.node_z[row + 1] - mesh.node_z[row];
  const double b = mesh.node_z[row + 2] - mesh.node_z[row];
  // Parabola: de Lugao & Wannamaker (1996), Geophys. J. Int. 127, 806-810.
  const std::array<double, 3> parabola = {-(a + b) / (a * b), b / (a * (b - a)), -a / (b * (b - a))};

  GroundImpedance result;
  // Above the host's ground the host's field has a kink there; only the total field is smooth below the site.
  const bool on_host = row >= mesh.host.ground_row;
  result.derivative = on_host ? primary.node_derivative[row] : Complex(0.0);
  for (std::size_t i = 0; i < parabola.size(); ++i) {
    const Complex secondary = field.secondary(site.column, row + i);
    result.derivative += parabola[i] * (on_host ? secondary : secondary + primary.node[row + i]);
    result.weights[i] = parabola[i];
    result.nodes[i] = mesh.node(site.column, row + i);
  }
  result.field = primary.node[row] + field.secondary(site.column, row);
  result.impedance = mesh.mode == Mode::te
                         ? -Complex(0.0, field.omega_mu0()) * result.field / result.derivative
                         : -site.resistivity * result.derivative / result.field;
  return result;
}

}  // namespace numerics::section
