// model_file.h: the model file of an inversion: which cells of the mesh make a block.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "formats/occam/occam_data.h"
#include "formats/occam/occam_model.h"

namespace Module_occam {

/// A layer as in the model file.
struct LayerLines {
  int rows = 0;
  std::vector<int> block_columns;
};

/// The text of a model file on the mesh "MESH", lines ending in CR LF.
std::string model_file_text(const std::string& model_name, double binding_offset,
                            const std::vector<LayerLines>& layers);

/// The files that a model file names, as written there; empty for "none".
struct ModelNames {
  std::string mesh_file;
  std::string statics_file;
  std::string prejudice_file;
};

/// Throws as read_model_file.
ModelNames read_model_names(const std::string& path);

/// Reads a model file, its mesh and, where it is there, its statics file, and finds the node of each site.
/// Throws Refusal or EmptyLine (text_input.h), or std::runtime_error with what is wrong.
/// @param run_folder  where relative names are looked for
/// @param name        of the model file, as the start file gives it
/// @param sites       of the run's data file; none leaves site_node empty
OccamModel read_model_file(const std::filesystem::path& run_folder, const std::string& name,
                           const OccamData& sites);

}  // namespace Module_occam
