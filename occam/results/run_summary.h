// run_summary.h: a run directory as a whole.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "formats/occam/iteration_file.h"
#include "formats/occam/occam_data.h"
#include "formats/occam/occam_model.h"

namespace Module_occam {

/// The names of the iteration files ("ITER" and anything after it, in any case) in a folder, sorted.
std::vector<std::string> iteration_file_names(const std::string& folder);

/// The file that names model and data of the run in a folder: "startup", or else the first iteration file.
/// Empty without either.
std::filesystem::path control_file_in(const std::filesystem::path& folder);

/// The one for a model of the folder: control_file_in, or else another start file, whichever names it. Empty
/// without either. Throws as read_control_file where control_file_in can't be read.
std::filesystem::path control_file_of(const std::filesystem::path& folder, const std::string& model_file);

/// What the files of a run say before any iteration.
struct RunFiles {
  std::string control_file;  // without folder
  ControlFile names;
  OccamData data;
  OccamModel model;
};

/// Reads them: names from `control_file` in the folder or, if that is empty, from control_file_in, but the
/// model that the last iteration names where there is one. Shows nothing. Throws std::runtime_error with a
/// sentence that names the file at fault.
RunFiles read_run_files(const std::filesystem::path& folder, const std::string& control_file);

struct ListedIteration : OccamIteration {  // without parameters
  std::string file;                        // without folder
};

/// The heads of a run's iteration files in its folder, by their numbers. Shows nothing.
/// @param remarks  gets a sentence for each that can't be read, which is left out, and for each that names
///                 the run's model but isn't of it, which isn't
std::vector<ListedIteration> list_iterations(const std::filesystem::path& folder, const RunFiles& run,
                                             std::vector<std::string>& remarks);

struct RunSummary : RunFiles {
  std::vector<ListedIteration> iterations;
};

/// Reads a run directory: names from `control_file` in it or, if that is empty, from "startup" or else the
/// first iteration file; sites, model, the heads of all iteration files. Iteration files that can't be read
/// are reported and left out; a data file that can't be read behind its sites, as one that was cut off, is
/// reported.
/// @return 0, or -1 after a message
[[nodiscard]] int read_run(const std::filesystem::path& folder, const std::string& control_file,
                           RunSummary& run);

}  // namespace Module_occam
