#include "batch/run_option.h"

#include <filesystem>
#include <utility>

#include "batch/command.h"
#include "core/user_interface.h"
#include "occam/inversion/earlier_iterations.h"
#include "occam/results/run_summary.h"

namespace fs = std::filesystem;

namespace Batch {

namespace {

/// Of the last iterations: nobody is to take an earlier one for the last.
void tell_unreadable(const Module_occam::RunResults& results) {
  for (const auto& [name, stamp] : results.refused) {
    if (Module_occam::iteration_number_of(name) > results.last_iteration) {
      user_interface().show_message(name + " can't be read; iteration " +
                                    std::to_string(results.last_iteration) + " is taken for the last one");
    }
  }
}

}  // namespace

void add_control_option(Parser& parser, std::string& control_file) {
  parser.add_option("--control", control_file,
                    "file that names model and data, if it is neither startup nor an iteration file");
}

void add_run_options(Parser& parser, RunOptions& options) {
  parser.add_option("DIR", options.directory, "the run directory").required().existing_directory();
  add_control_option(parser, options.control_file);
  parser.add_option("--iteration", options.iteration, "number of the iteration; left out: the last one")
      .in_range(0, Module_occam::max_iteration);
}

void add_output_folder_option(Parser& parser, RunOptions& options) {
  parser.add_option("--output", options.output_folder,
                    "folder of the files, created if it is missing; left out: Brenlox in the run directory");
}

std::optional<Module_occam::RunView> open_run(const RunOptions& options,
                                              Module_occam::Iterations iterations) {
  const fs::path control = options.control_file.empty() ? Module_occam::control_file_in(options.directory)
                                                        : fs::path(options.directory) / options.control_file;
  if (control.empty()) {
    user_interface().show_message("There is no start file and no iteration file");
    return {};
  }
  Module_occam::RunResults results;
  if (Module_occam::open_results(control, results, iterations) != 0) {
    return {};
  }
  const int iteration = options.iteration.value_or(results.last_iteration);
  if (iteration > results.last_iteration || !results.has(iteration)) {
    if (!results.has_iterations()) {
      user_interface().show_message(Module_occam::lack_of_iterations(results));
      return {};
    }
    user_interface().show_message("There is no file of iteration " + std::to_string(iteration));
    return {};
  }
  if (!options.iteration) {
    tell_unreadable(results);
  }
  Module_occam::RunView view(std::move(results));
  view.choose_iteration(iteration);
  if (!options.output_folder.empty()) {
    view.write_to(path_from_here(options.output_folder));
  }
  return view;
}

}  // namespace Batch
