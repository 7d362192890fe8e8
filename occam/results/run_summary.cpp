#include "occam/results/run_summary.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <utility>

#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "formats/occam/data_file.h"
#include "formats/occam/model_file.h"
#include "occam/occam_files.h"
#include "occam/results/iteration_model.h"
#include "occam/run_parts.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

class RunFault : public std::runtime_error, public CompleteMessage {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads one file of a run. @param kind  "a model file"
template <class Reader>
auto read_part(const std::string& name, const char* kind, Reader&& read) {
  try {
    return std::forward<Reader>(read)();
  } catch (const std::exception& failure) {
    throw RunFault(name + " can't be read as " + kind + ": " + failure.what());
  }
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

fs::path control_file_of(const fs::path& folder, const std::string& model_file) {
  const auto names_it = [&](const fs::path& file) {
    return equal_ignoring_case(read_control_file(file.string()).model_file, model_file);
  };
  fs::path control = control_file_in(folder);
  if (control.empty() || names_it(control)) {
    return control;
  }
  std::vector<fs::path> others;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder.empty() ? fs::path(".") : folder)) {
    if (!own_start(entry.path().filename().string()).empty() && is_of_start_format(entry.path())) {
      others.push_back(entry.path());
    }
  }
  std::ranges::sort(others);
  const auto found = std::ranges::find_if(others, [&](const fs::path& file) {
    try {
      return names_it(file);
    } catch (const std::exception&) {
      return false;
    }
  });
  return found == others.end() ? fs::path() : *found;
}

namespace {

/// The model file that the iteration of the highest number names. A run over a masked mesh stands in the
/// folder of the one that it was made from, whose "startup" names another.
std::optional<std::string> model_of_last_iteration(const fs::path& folder) {
  std::optional<OccamIteration> last;
  for (const std::string& name : iteration_file_names(folder.string())) {
    try {
      OccamIteration read = read_iteration_file(IterationParts::head_only, (folder / name).string());
      if (!last || read.number >= last->number) {
        last = std::move(read);
      }
    } catch (const std::exception&) {
      continue;  // told where the iterations are listed
    }
  }
  return last && !last->model_file.empty() ? std::optional(last->model_file) : std::nullopt;
}

}  // namespace

RunFiles read_run_files(const fs::path& folder, const std::string& control_file) {
  if (!fs::is_directory(folder)) {
    throw RunFault(folder.string() + " is not a folder");
  }
  const std::string control =
      control_file.empty() ? control_file_in(folder).filename().string() : control_file;
  if (control.empty()) {
    throw RunFault("There is no start file and no iteration file");
  }
  RunFiles run;
  run.control_file = control;
  run.names =
      read_part(control, "a start file", [&] { return read_control_file((folder / control).string()); });
  run.data = read_part(run.names.data_file, "a data file",
                       [&] { return read_data_file_sites((folder / run.names.data_file).string()); });
  if (control_file.empty()) {
    run.names.model_file = model_of_last_iteration(folder).value_or(run.names.model_file);
  }
  run.model = read_part(run.names.model_file, "a model file",
                        [&] { return read_model_file(folder, run.names.model_file, run.data); });
  return run;
}

std::vector<ListedIteration> list_iterations(const fs::path& folder, const RunFiles& run,
                                             std::vector<std::string>& remarks) {
  std::vector<ListedIteration> iterations;
  for (const std::string& name : iteration_file_names(folder.string())) {
    try {
      iterations.push_back(
          {read_part(
               name, "an iteration file",
               [&] { return read_iteration_file(IterationParts::head_only, (folder / name).string()); }),
           name});
    } catch (const RunFault& fault) {
      remarks.emplace_back(fault.what());
      continue;
    }
    if (!is_of_run(run.control_file, run.names.model_file, iterations.back())) {
      iterations.pop_back();
      continue;
    }
    const std::string& model_file = iterations.back().model_file;
    if (!model_file.empty() && model_file != run.names.model_file) {
      continue;  // of another model in this folder
    }
    std::string mismatch = parameter_mismatch(run.model, name, iterations.back().parameter_count);
    if (!mismatch.empty()) {
      remarks.push_back(std::move(mismatch));
    }
  }
  std::ranges::stable_sort(iterations, {}, &ListedIteration::number);
  return iterations;
}

int read_run(const fs::path& folder, const std::string& control_file, RunSummary& run) {
  return trap_errors("An error occurred while reading the run directory: ", [&] {
    RunSummary read{read_run_files(folder, control_file), {}};
    report_shared_node(read.model);
    std::vector<std::string> remarks;
    try {
      (void)read_part(read.names.data_file, "a data file",
                      [&] { return read_data_file((folder / read.names.data_file).string()); });
    } catch (const RunFault& fault) {
      remarks.emplace_back(fault.what());
    }
    read.iterations = list_iterations(folder, read, remarks);
    for (const std::string& remark : remarks) {
      user_interface().show_message(remark);
    }
    run = std::move(read);
  });
}

}  // namespace Module_occam
