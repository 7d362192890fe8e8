#include "occam/results/run_summary.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "occam/occam_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

bool refuse(const std::string& message) {
  user_interface().show_message(message);
  return false;
}

/// A reader that ends at an empty line has said nothing; the user is to know which file it was.
bool read_parts(const fs::path& folder, const std::string& control_file, RunSummary& run) {
  if (control_file.empty()) {
    return refuse("There is no start file and no iteration file");
  }
  if (read_occam_control_file((folder / control_file).string(), run.names) != 0) {
    return refuse(control_file + " can't be read as a start file");
  }
  if (read_occam_data_file((folder / run.names.data_file).string(), run.data) != 0) {
    return refuse(run.names.data_file + " can't be read as a data file");
  }
  if (read_occam_model(folder, run.names.model_file, run.data, run.model) != 0) {
    return refuse(run.names.model_file + " can't be read as a model file");
  }
  return true;
}

std::vector<OccamIteration> read_iterations(const fs::path& folder) {
  std::vector<OccamIteration> iterations;
  for (const std::string& name : iteration_file_names(folder.string())) {
    OccamIteration iteration;
    if (read_occam_iteration(IterationParts::head_only, (folder / name).string(), iteration) == 0) {
      iterations.push_back(std::move(iteration));
    } else {
      user_interface().show_message(name + " can't be read as an iteration file");
    }
  }
  std::ranges::stable_sort(iterations, {}, &OccamIteration::number);
  return iterations;
}

}  // namespace

std::vector<std::string> iteration_file_names(const std::string& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (equal_ignoring_case(name.substr(0, 4), "ITER") && entry.is_regular_file()) {
      names.push_back(name);
    }
  }
  std::ranges::sort(names);
  return names;
}

fs::path control_file_in(const fs::path& folder) {
  if (fs::exists(folder / "startup")) {
    return folder / "startup";
  }
  const std::vector<std::string> names = iteration_file_names(folder.empty() ? "." : folder.string());
  return names.empty() ? fs::path() : folder / names.front();
}

int read_run(const fs::path& folder, const std::string& control_file, RunSummary& run) {
  return trap_errors("An error occurred while reading the run directory: ", [&] {
    if (!fs::is_directory(folder)) {
      throw std::runtime_error(folder.string() + " is not a folder");
    }
    RunSummary read;
    if (!read_parts(folder, control_file.empty() ? control_file_in(folder).filename().string() : control_file,
                    read)) {
      return -1;
    }
    read.iterations = read_iterations(folder);
    run = std::move(read);
    return 0;
  });
}

}  // namespace Module_occam
