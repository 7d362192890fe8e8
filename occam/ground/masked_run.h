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

/// Writes both beside a masked mesh, from the model and the start file of the run that the model belongs to:
/// "NAME_model" and "NAME_startup" for "NAME.msh". Blocks that stay free keep their start values. Writes
/// nothing where there is no such run, where the mesh is in another folder than its data, or if the user
/// won't replace earlier files. Throws std::runtime_error if a file can't be read or written.
MaskedRun write_masked_run(const std::string& mesh_path, const TopoMask& mask);

/// Names the stations on a wall, writes the masked mesh over an earlier file, with a model and a start file
/// of its run, and reports how many triangles are free.
/// @return 0, or -1 after a message
[[nodiscard]] int write_masked_mesh(const std::string& path, const TopoMask& mask);

}  // namespace Module_occam
