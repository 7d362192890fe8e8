// host.h: the layered earth whose field is the primary one: the left-most or the right-most column of the
// section.
#pragma once
#include <cstddef>
#include <vector>

#include "numerics/section/section.h"

namespace numerics::section {

/// A column of cells as a layered earth, the last row continued as a half space.
struct LayeredColumn {
  std::size_t ground_row = 0;        // node row at which the ground begins
  std::vector<double> heights;       // m, of the rows of ground
  std::vector<double> conductivity;  // S/m, of the rows of ground
};

enum class End : std::uint8_t { left, right };

/// An end column: air by its top triangles, conductivity by its outer ones. The ground begins below the last
/// row whose top triangle is air, also where other triangles of that row are ground.
///
/// A layer begins where the code changes from one row to the next; the last one that the section allows
/// has the conductivity of the mesh's last row.
/// Throws std::invalid_argument if the column is air from top to bottom.
LayeredColumn end_column(const Section& section, End end);

/// The end column whose uppermost layer is the more resistive one, the left one of two equal ones. The choice
/// holds for both modes.
LayeredColumn host_column(const Section& section);

}  // namespace numerics::section
