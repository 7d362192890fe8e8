// brenlox_batch response: the response of a two-dimensional model on its own mesh.
#include <iostream>
#include <memory>

#include "batch/command.h"
#include "batch/run_option.h"
#include "occam/results/iteration_response.h"

namespace Batch {
namespace {

int run_response(const RunOptions& options) {
  auto view = open_run(options);
  if (!view || view->load_iteration() != 0) {
    return status_failed;
  }
  if (Module_occam::make_response(view->results(), view->current_iteration(), view->iteration()) != 0) {
    report_stop("Stopped; nothing was written");
    return status_failed;
  }
  Module_occam::report_mesh_warnings(view->results(), view->iteration());
  std::cout << "The response of iteration " << view->current_iteration() << " is written to "
            << Module_occam::find_response(view->results(), view->current_iteration()).string() << '\n';
  return status_done;
}

}  // namespace

Command add_response_command(Program& program) {
  const auto options = std::make_shared<RunOptions>();
  Parser parser = program.add_command(
      "response", "Computes the response of an iteration's model and writes it into the folder Brenlox");
  add_run_options(parser, *options);
  add_output_folder_option(parser, *options);
  return {parser, [options] { return run_response(*options); }};
}

}  // namespace Batch
