// primary_field.h: the field of the layered host on the rows of a mode's mesh; E is 1 at the host's ground.
//
//   TE: dE/dz = -i omega mu H        TM: dH/dz = -s E
#pragma once
#include <array>
#include <vector>

#include "numerics/section/layered_field.h"
#include "numerics/section/mode_mesh.h"

namespace numerics::section {

struct PrimaryField {
  struct Row {
    /// E in TE, H in TM at 1/6, 1/2, 5/6 of the row: where the centroids of triangles lie
    std::array<Complex, 3> value = {};
    /// E at 0, 1/4, 3/4, 1 of the row: its edges and the diagonals' middles
    std::array<Complex, 4> electric = {};
    Complex admittivity;  // S/m, of the host
  };
  std::vector<Row> rows;
  std::vector<LayeredField::Value> nodes;  // at each node row
};

/// On all rows and node rows of the mesh.
PrimaryField primary_field(const ModeMesh& mesh, const Frequency& frequency);

}  // namespace numerics::section
