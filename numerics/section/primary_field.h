// primary_field.h: the field of a layered host on the rows of a mode's mesh, 1 at the host's ground.
//
//   TE: E; in the air above the host's ground 1 - i omega mu H z, z from the ground down;
//       dE/dz = -i omega mu H
//   TM: H; 1 in the air; dH/dz = -E / rho
#pragma once
#include <array>
#include <vector>

#include "numerics/section/layered_field.h"
#include "numerics/section/mode_mesh.h"

namespace numerics::section {

/// The field at the node rows, from the top of the mesh, added air included.
/// @param frequency  Hz
std::vector<Complex> primary_at_nodes(const ModeMesh& mesh, const LayeredColumn& column, double frequency);

struct PrimaryField {
  struct Row {
    std::array<Complex, 3> value = {};  // at 1/6, 1/2, 5/6 of the row: where the centroids of triangles lie
    std::array<Complex, 4> derivative =
        {};                    // d/dz at 0, 1/4, 3/4, 1 of the row: its edges and the diagonals' middles
    double resistivity = 0.0;  // ohm-m, of the host; 0 in its air
  };
  std::vector<Row> rows;
  std::vector<Complex> node;             // at each node row
  std::vector<Complex> node_derivative;  // d/dz just below each node row, the last excepted
  Complex impedance;                     // E / H at the host's ground, ohm
};

/// The field of the mesh's host.
/// @param frequency  Hz
PrimaryField primary_field(const ModeMesh& mesh, double frequency);

}  // namespace numerics::section
