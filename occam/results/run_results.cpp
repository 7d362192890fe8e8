#include "occam/results/run_results.h"

#include <algorithm>
#include <stdexcept>

#include "core/absent_value.h"
#include "core/file_names.h"
#include "core/trap_errors.h"
#include "formats/occam/response_file.h"
#include "occam/occam_files.h"
#include "occam/results/run_summary.h"
#include "occam/run_parts.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

using Stamps = std::map<std::string, FileStamp>;

Stamps iteration_stamps(const fs::path& folder) {
  Stamps stamps;
  for (const std::string& name : iteration_file_names(folder.string())) {
    stamps.emplace(name, file_stamp(folder / name));
  }
  return stamps;
}

void clear_iterations(RunResults& results) {
  results.iteration_file = {};
  results.response_file = {};
  results.iteration_multiplier.fill(no_data);
  results.iteration_roughness.fill(no_data);
  results.iteration_misfit.fill(no_data);
  results.last_iteration = 0;
  results.of_other_runs = 0;
}

void store(RunResults& results, const std::string& name, const OccamIteration& iteration) {
  if (iteration.number < 0 || iteration.number > max_iteration) {
    throw std::runtime_error(name + " is of iteration " + std::to_string(iteration.number) +
                             "; iterations from 0 to " + std::to_string(max_iteration) + " can be shown");
  }
  const auto number = static_cast<std::size_t>(iteration.number);
  results.iteration_file[number] = name;
  results.response_file[number] = response_file_name(name);
  results.iteration_multiplier[number] = static_cast<float>(iteration.PMU);
  results.iteration_roughness[number] = static_cast<float>(iteration.RLAST);
  results.iteration_misfit[number] = static_cast<float>(iteration.TLAST);
  results.last_iteration = std::max(results.last_iteration, iteration.number);
}

/// A start file without parameters, or of a form that only an inversion reads, has no model to look at.
void store_start_model(RunResults& results) {
  try {
    (void)read_iteration_file(IterationParts::with_parameters,
                              (results.folder / results.control_file).string());
    results.iteration_file[0] = results.control_file;
    results.response_file[0] = response_file_name(results.control_file);
  } catch (const std::exception&) {
    return;
  }
}

/// Throws for an iteration number that can't be shown.
void read_iterations(RunResults& results) {
  clear_iterations(results);
  for (const auto& [name, stamp] : results.seen) {
    const auto refused = results.refused.find(name);
    if (refused != results.refused.end() && refused->second == stamp) {
      continue;  // reported before
    }
    OccamIteration iteration;
    const int outcome =
        read_occam_iteration(IterationParts::head_only, (results.folder / name).string(), iteration);
    if (outcome < 0) {
      user_interface().show_message("Error " + std::to_string(outcome) +
                                    " occurred while calculating the response for " + name);
      results.refused[name] = stamp;
      continue;
    }
    if (is_of_run(results.control_file, results.names.model_file, iteration)) {
      store(results, name, iteration);
    } else {
      ++results.of_other_runs;
    }
  }
  if (!results.has_iterations()) {
    store_start_model(results);
  }
}

int refuse(const std::string& message) {
  user_interface().show_message(message);
  return -1;
}

int read_run_files(const fs::path& control_file, RunResults& results, Iterations iterations) {
  if (read_occam_control_file(control_file.string(), results.names, EmptyLines::reported) != 0) {
    return -1;
  }
  if (results.names.model_file.empty() || results.names.data_file.empty()) {
    return refuse(control_file.filename().string() + " names no model file or no data file");
  }
  if (read_occam_data_file((results.folder / results.names.data_file).string(), results.data,
                           EmptyLines::reported) != 0 ||
      read_occam_model(results.folder, results.names.model_file, results.data, results.model,
                       EmptyLines::reported) != 0) {
    return -1;
  }
  results.seen = iteration_stamps(results.folder);
  read_iterations(results);
  if (!results.has_iterations() && iterations == Iterations::needed) {
    return refuse(lack_of_iterations(results));
  }
  std::error_code shown_when_a_file_is_written;
  fs::create_directory(results.output_folder, shown_when_a_file_is_written);
  return 0;
}

}  // namespace

std::string lack_of_iterations(const RunResults& results) {
  return no_iterations_message +
         (results.of_other_runs > 0 ? " for the model " + results.names.model_file : std::string());
}

RunResults::RunResults() { clear_iterations(*this); }

fs::path RunResults::derived_file(int iteration, const std::string& ending) const {
  return output_folder /
         (Module_util::strip_extension(iteration_file[static_cast<std::size_t>(iteration)]) + ending);
}

FileStamp file_stamp(const fs::path& file) {
  std::error_code missing;
  FileStamp stamp;
  stamp.written = fs::last_write_time(file, missing);
  stamp.size = fs::file_size(file, missing);
  return missing ? FileStamp{} : stamp;
}

int open_results(const fs::path& control_file, RunResults& results, Iterations iterations) {
  return trap_errors("An error occurred while reading the iteration files: ", [&] {
    const BusyPointer busy;
    results = RunResults();
    results.folder = fs::weakly_canonical(fs::absolute(control_file).parent_path());
    results.output_folder = results.folder / derived_folder;
    results.control_file = control_file.filename().string();
    return read_run_files(fs::absolute(control_file), results, iterations);
  });
}

bool refresh_results(RunResults& results) {
  bool changed = false;
  static_cast<void>(trap_errors("An error occurred while reading the iteration files: ", [&] {
    const Stamps now = iteration_stamps(results.folder);
    Stamps settled = results.seen;
    std::erase_if(settled, [&](const auto& file) { return !now.contains(file.first); });
    for (const auto& [name, stamp] : now) {
      const auto waiting = results.waiting.find(name);
      if (waiting != results.waiting.end() && waiting->second == stamp) {
        settled[name] = stamp;
      }
    }
    results.waiting = now;
    if (settled != results.seen) {
      results.seen = settled;
      changed = true;
      read_iterations(results);
    }
  }));
  return changed;
}

std::string ask_for_control_file() {
  FileDialogRequest request;
  request.title = "Select the Occam2d control file";
  request.filter = "OCCAM2D inversion control file (*.*)|*.*";
  request.suggested_name = "startup";
  return user_interface().select_file_to_open(request);
}

}  // namespace Module_occam
