// masked_run.h: what an inversion over a masked mesh needs beside the mesh: a model that names it and a start
// file with as many parameters as the mask leaves free.
#pragma once
#include <string>

#include "occam/ground/topo_mask.h"

namespace Module_occam {

struct MaskedRun {
  std::string model_file;  // names within the mesh's folder; empty: nothing was written
  std::string start_file;
  int parameters = 0;
};

/// Names the stations on a wall and writes the masked mesh over an earlier file; beside it, from the model
/// and the start file of the run that the model belongs to, "NAME_model" and "NAME_startup" for "NAME.msh",
/// where the blocks that stay free keep their start values. Without such a run, or with the mesh in another
/// folder than its run, there is the mesh alone. Reports what was written, and how many triangles are free.
/// Where the user won't replace an earlier model or start file, nothing is written.
/// @param run  gets what was written beside the mesh
/// @return 0, or -1 after a message or the user's No
[[nodiscard]] int write_masked_mesh(const std::string& path, const TopoMask& mask, MaskedRun& run);

}  // namespace Module_occam
