// mesh_file.h: the mesh file of an inversion.
#pragma once
#include <filesystem>
#include <string>

#include "formats/occam/occam_mesh.h"

namespace Module_occam {

enum class MeshCodes {
  all_free,   // every triangle is free
  from_mesh,  // those of mesh_code, with the fixed resistivities
};

/// The text of a mesh file, lines ending in CR LF.
std::string mesh_file_text(const OccamMesh& mesh, MeshCodes codes);

/// The path of the mesh that a model file names: in the run's folder, then in the folder of the model file,
/// each time also with other case ("MESH" for "mesh"). Empty if it is in neither.
std::string find_mesh_file(const std::string& name, const std::filesystem::path& run_folder,
                           const std::string& model_path);

/// Reads a mesh file. Throws Refusal (text_input.h) with the message for the user, or std::runtime_error
/// with what is wrong.
OccamMesh read_mesh_file(const std::string& path);

}  // namespace Module_occam
