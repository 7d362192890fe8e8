// run_option.h: the run directory and the iteration that a command works on.
#pragma once
#include <optional>
#include <string>

#include "batch/options.h"
#include "occam/results/run_view.h"

namespace Batch {

struct RunOptions {
  std::string directory;
  std::string control_file;
  std::optional<int> iteration;  // none: the last one
  std::string output_folder;     // of what is derived from the run; empty: Brenlox in the run directory
};

/// Adds --control to a command.
void add_control_option(Parser& parser, std::string& control_file);

/// Adds the positional DIR, --control and --iteration to a command.
void add_run_options(Parser& parser, RunOptions& options);

/// Adds --output, the folder of what a command writes.
void add_output_folder_option(Parser& parser, RunOptions& options);

/// Opens the run and chooses the iteration.
/// @param iterations  may_come: without any its start model, which is iteration 0
/// @return nothing after a message
std::optional<Module_occam::RunView> open_run(
    const RunOptions& options, Module_occam::Iterations iterations = Module_occam::Iterations::needed);

}  // namespace Batch
