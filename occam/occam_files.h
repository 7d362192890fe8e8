// occam_files.h: the files of an inversion, read and written for a user: a failure is one message and a
// status.
//
// All return 0; or -1 after a message, or without one at an empty line in place of a text, unless that is to
// be reported.
// What is read goes to the last parameter, which is as before after a failure.
#pragma once
#include <cstdint>
#include <filesystem>
#include <string>

#include "formats/occam/data_file.h"
#include "formats/occam/iteration_file.h"
#include "formats/occam/mesh_file.h"
#include "formats/occam/occam_data.h"
#include "formats/occam/occam_model.h"
#include "formats/occam/occam_response.h"

namespace Module_occam {

/// What a reader does at an empty line in place of a text.
enum class EmptyLines : std::uint8_t {
  silent,
  reported  // like any other failure
};

/// Names of model and data file from a start or iteration file.
[[nodiscard]] int read_occam_control_file(const std::string& path, ControlFile& names,
                                          EmptyLines empty_lines = EmptyLines::silent);

/// Title and sites of a data file.
[[nodiscard]] int read_occam_data_file(const std::string& path, OccamData& data,
                                       EmptyLines empty_lines = EmptyLines::silent);

/// All of a data file.
[[nodiscard]] int read_occam_data_rows(const std::string& path, ObservedData& data,
                                       EmptyLines empty_lines = EmptyLines::silent);

/// A model file with its mesh and the nodes of the sites. Two sites on one node give a message, but are no
/// failure.
/// @param run_folder  relative names are meant from here
/// @param name        of the model file, as the start file gives it
/// @param sites       of the run's data file, read before
[[nodiscard]] int read_occam_model(const std::filesystem::path& run_folder, const std::string& name,
                                   const OccamData& sites, OccamModel& model,
                                   EmptyLines empty_lines = EmptyLines::silent);

/// Tells the user where two sites of a model share a node.
void report_shared_node(const OccamModel& model);

/// A start or iteration file, with its parameters or without them.
[[nodiscard]] int read_occam_iteration(IterationParts parts, const std::string& path,
                                       OccamIteration& iteration,
                                       EmptyLines empty_lines = EmptyLines::silent);

/// @param header_file  the data file for a response without a header
[[nodiscard]] int read_occam_response(const std::string& path, const std::string& header_file,
                                      OccamResponse& response, EmptyLines empty_lines = EmptyLines::silent);

/// Writes a mesh file; an earlier one is replaced when the new one is complete.
[[nodiscard]] int write_occam_mesh(const std::string& path, const OccamMesh& mesh, MeshCodes codes);

}  // namespace Module_occam
