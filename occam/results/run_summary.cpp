#include "occam/results/run_summary.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "formats/occam/data_file.h"
#include "formats/occam/model_file.h"
#include "occam/occam_files.h"
#include "occam/results/iteration_model.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

bool refuse(const std::string& message) {
  user_interface().show_message(message);
  return false;
}

/// Reads one file of a run. @param kind  "a model file". @return false after one message, which names the
/// file
template <class Record, class Reader>
bool read_part(Record& record, const std::string& name, const char* kind, Reader&& read) {
  try {
    record = std::forward<Reader>(read)();
    return true;
  } catch (const std::exception& failure) {
    return refuse(name + " can't be read as " + kind + ": " + failure.what());
  }
}

bool read_parts(const fs::path& folder, const std::string& control_file, RunSummary& run) {
  if (control_file.empty()) {
    return refuse("There is no start file and no iteration file");
  }
  if (!read_part(run.names, control_file, "a start file",
                 [&] { return read_control_file((folder / control_file).string()); }) ||
      !read_part(run.data, run.names.data_file, "a data file",
                 [&] { return read_data_file_sites((folder / run.names.data_file).string()); }) ||
      !read_part(run.model, run.names.model_file, "a model file",
                 [&] { return read_model_file(folder, run.names.model_file, run.data); })) {
    return false;
  }
  report_shared_node(run.model);
  return true;
}

/// An iteration with another number of parameters than the model's is reported and listed all the same.
std::vector<OccamIteration> read_iterations(const fs::path& folder, const OccamModel& model) {
  std::vector<OccamIteration> iterations;
  for (const std::string& name : iteration_file_names(folder.string())) {
    OccamIteration iteration;
    if (!read_part(iteration, name, "an iteration file", [&] {
          return read_iteration_file(IterationParts::head_only, (folder / name).string());
        })) {
      continue;
    }
    const std::string mismatch = parameter_mismatch(model, name, iteration.parameter_count);
    if (!mismatch.empty()) {
      user_interface().show_message(mismatch);
    }
    iterations.push_back(std::move(iteration));
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
    read.iterations = read_iterations(folder, read.model);
    run = std::move(read);
    return 0;
  });
}

}  // namespace Module_occam
