// brenlox_batch grid: an iteration's model as grids and tables.
#include <memory>

#include "batch/command.h"
#include "batch/run_option.h"
#include "occam/results/grid_export.h"

namespace Batch {
namespace {

int run_grid(const RunOptions& options) {
  auto view = open_run(options);
  if (!view) {
    return status_failed;
  }
  if (Module_occam::write_grids(*view) != 0) {
    report_stop("Stopped");
    return status_failed;
  }
  return status_done;
}

}  // namespace

Command add_grid_command(Program& program) {
  const auto options = std::make_shared<RunOptions>();
  Parser parser = program.add_command(
      "grid", "Writes grids, points and data fit of an iteration into the folder Brenlox");
  add_run_options(parser, *options);
  add_output_folder_option(parser, *options);
  return {parser, [options] { return run_grid(*options); }};
}

}  // namespace Batch
