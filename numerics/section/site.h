// site.h: where a site stands on a section, how the ground slopes there, and from which nodes the derivatives
// of the field are taken.
//
// The choices, one-sided and odd ones included, are those of the inversion that the models come from: with
// any others a response would not be the one that was fitted. All of them go by the codes of the cells around
// the node; above the mesh there is air.
#pragma once
#include <array>
#include <cstddef>

#include "numerics/section/section.h"

namespace numerics::section {

/// What the field at a node of the section counts for in a derivative, 1/m.
struct NodeWeight {
  std::size_t column = 0;
  std::size_t row = 0;
  double weight = 0.0;
};

using Derivative = std::array<NodeWeight, 3>;

struct Site {
  std::size_t column = 0;  // node column
  std::size_t row = 0;     // node row
  /// Of the ground, radians, positive where it falls to the right: the impedance is taken along it.
  double slope = 0.0;
  Derivative down = {};   // d/dz of the secondary field
  Derivative along = {};  // d/dy, 0 at the first and the last node column
  /// Row whose conductivity of the host, and triangle whose own one, the magnetic field's derivative goes
  /// with: below the site, above it on a sea floor.
  std::size_t row_beside = 0;
  std::size_t triangle_beside = 0;  // index of Section::resistivities
  bool on_a_wall = false;           // a vertical wall falls from the node
};

/// The site on a node column: on the first node row below which the triangles at both sides are neither both
/// air nor both sea water. The first and the last node column take the row of their inner neighbour.
/// Throws std::invalid_argument where there is no ground, where it ends less than two rows further down, and
/// under sea water that has no two rows above it in the mesh.
Site make_site(const Section& section, std::size_t node_column);

/// Whether a site on a node column stands on a wall; false where there is no ground.
bool stands_on_a_wall(const Section& section, std::size_t node_column);

}  // namespace numerics::section
