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

struct RunSummary {
  ControlFile names;
  OccamData data;
  OccamModel model;
  std::vector<OccamIteration> iterations;  // by their numbers, without parameters
};

/// Reads a run directory: names from `control_file` in it or, if that is empty, from "startup" or else the
/// first iteration file; sites, model, the heads of all iteration files. Iteration files that can't be read
/// are reported and left out.
/// @return 0, or -1 after a message
[[nodiscard]] int read_run(const std::filesystem::path& folder, const std::string& control_file,
                           RunSummary& run);

}  // namespace Module_occam
