// air_rows.h: the rows of air above a mesh that the electric field along strike needs.
#pragma once
#include <vector>

namespace numerics::section {

/// Ten thicknesses, m, from the ground upwards: the first as thick as the first row of the mesh, then growing
/// by one factor up to half the mesh's width. So coarse an air, and a factor bisected to four digits only,
/// are part of the response that models were fitted with.
/// @param first_height  m
/// @param mesh_width    m
std::vector<double> air_rows(double first_height, double mesh_width);

}  // namespace numerics::section
