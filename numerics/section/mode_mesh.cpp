#include "numerics/section/mode_mesh.h"

#include <numeric>

#include "numerics/section/air_rows.h"

namespace numerics::section {

ModeMesh make_mode_mesh(const Section& section, const LayeredColumn& host, Mode mode) {
  ModeMesh mesh;
  mesh.mode = mode;
  mesh.columns = section.columns();
  mesh.widths = section.column_widths;
  mesh.heights = section.row_heights;
  if (mode == Mode::te) {
    const double width = std::accumulate(mesh.widths.begin(), mesh.widths.end(), 0.0);
    const std::vector<double> added = air_rows(mesh.heights.front(), width);
    mesh.heights.insert(mesh.heights.begin(), added.rbegin(), added.rend());
    mesh.added_rows = added.size();
  }
  mesh.rows = mesh.heights.size();
  mesh.node_z.resize(mesh.rows + 1);
  std::partial_sum(mesh.heights.begin(), mesh.heights.end(), mesh.node_z.begin() + 1);
  const double top = mesh.node_z[mesh.added_rows];
  for (double& z : mesh.node_z) {
    z -= top;
  }
  mesh.cells.assign(mesh.columns * mesh.rows,
                    {air_conductivity, air_conductivity, air_conductivity, air_conductivity});
  for (std::size_t column = 0; column < mesh.columns; ++column) {
    for (std::size_t row = 0; row < section.rows(); ++row) {
      Cell& cell = mesh.cells[column * mesh.rows + mesh.added_rows + row];
      for (std::size_t t = 0; t < cell.size(); ++t) {
        cell[t] =
            section.is_air(column, row, t) ? air_conductivity : 1.0 / section.resistivity(column, row, t);
      }
    }
  }
  mesh.host = host;
  mesh.host.ground_row += mesh.added_rows;
  return mesh;
}

}  // namespace numerics::section
