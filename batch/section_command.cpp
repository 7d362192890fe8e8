// brenlox_batch section: an iteration's model as a picture.
#include <iostream>
#include <memory>
#include <optional>

#include "batch/command.h"
#include "batch/offscreen_application.h"
#include "batch/run_option.h"
#include "core/number_text.h"
#include "occam/windows/section_picture.h"
#include "platform/files/files_in_use.h"

namespace Batch {
namespace {

struct SectionOptions {
  RunOptions run;
  std::string output;
  std::optional<double> min_res;  // log10 ohm-m; none: from the iteration
  std::optional<double> max_res;
  double max_depth = 2000.0;  // m
  bool log_depth = false;
  Module_occam::SectionLook look;
  int width = 1200;
  int height = 500;
};

int write_section(SectionOptions& options) {
  auto view = open_run(options.run, Module_occam::Iterations::may_come);
  if (!view || view->load_iteration() != 0) {
    return status_failed;
  }
  const Module_occam::RunResults& run = view->results();
  const safe_files::FilesInUse inputs({run.folder / options.run.control_file,
                                       run.folder / run.names.model_file, run.folder / run.names.data_file,
                                       run.model.mesh_file, run.file_of(view->current_iteration())});
  const Module_occam::ResistivityRange range = Module_occam::suggested_range(view->parameters());
  // As text: the command accepts what the window accepts.
  options.look.choices = Module_occam::read_choices({criterion_text(options.min_res.value_or(range.lower)),
                                                     criterion_text(options.max_res.value_or(range.upper)),
                                                     criterion_text(options.max_depth), options.log_depth});
  if (Module_occam::save_section(*view, options.look, options.output, {options.width, options.height}) != 0) {
    return status_failed;
  }
  std::cout << "The section of "
            << (run.has_start_only() ? "the start model"
                                     : "iteration " + plain_text(view->current_iteration()))
            << " is written to " << options.output << '\n';
  return status_done;
}

int run_section(SectionOptions& options) {
  options.output = path_from_here(options.output);
  const OffscreenApplication application;
  return write_section(options);
}

}  // namespace

Command add_section_command(Program& program) {
  const auto options = std::make_shared<SectionOptions>();
  Parser parser = program.add_command("section", "Draws an iteration's model as a section");
  add_run_options(parser, options->run);
  parser.add_option("--output", options->output, "path ending in .png or .pdf; an earlier file is replaced")
      .required();
  parser.add_option("--min-res", options->min_res, "log10 ohm-m of the first colour");
  parser.add_option("--max-res", options->max_res, "log10 ohm-m of the last colour");
  parser.add_option("--max-depth", options->max_depth, "depth to draw down to, m").shows_default();
  parser.add_flag("--log-depth", options->log_depth, "logarithmic depth scale");
  parser.add_flag("--mesh", options->look.draw_mesh, "outline the blocks");
  parser
      .add_option("--colours", options->look.colour_table,
                  "0 grey, 1 red to blue, 2 rainbow with red low, 3 grey without its dark end")
      .in_range(0, 3)
      .shows_default();
  parser.add_flag("--invert", options->look.invert, "reverse the colours");
  parser.add_option("--width", options->width, "pixels").in_range(300, 10000).shows_default();
  parser.add_option("--height", options->height, "pixels").in_range(150, 10000).shows_default();
  return {parser, [options] { return run_section(*options); }};
}

}  // namespace Batch
