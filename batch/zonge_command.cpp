// brenlox_batch zonge: the merged curves of a line as a Zonge AVG data set.
#include <iostream>
#include <memory>

#include "batch/command.h"
#include "batch/reading_option.h"
#include "core/user_interface.h"
#include "output/zonge.h"
#include "output/zonge_files.h"
#include "platform/files/files_in_use.h"

namespace Batch {
namespace {

struct ZongeOptions {
  std::string survey;
  Module_database::LineSelection reading;
  std::string output;
};

int write_line(const ZongeOptions& options) {
  int rows = 0;
  if (Module_output::output_zonge(options.reading, options.output, {}, rows) != 0) {
    return -1;
  }
  if (rows == Module_output::nothing_written) {
    user_interface().show_message("Stopped; nothing was written");
    return -1;
  }
  std::cout << Module_output::zonge_summary(rows, Module_output::zonge_paths(options.output)) << '\n';
  return 0;
}

int run_zonge(ZongeOptions& options) {
  options.output = path_from_here(options.output);
  const safe_files::FilesInUse inputs({options.survey});
  if (!may_write_zonge(Module_output::zonge_paths(options.output))) {
    return status_failed;
  }
  return with_open_survey(options.survey, options.reading.line, [&] { return write_line(options); });
}

}  // namespace

Command add_zonge_command(Program& program) {
  const auto options = std::make_shared<ZongeOptions>();
  Parser parser =
      program.add_command("zonge", "Writes the merged curves of a line as .avg, .mde and .stn files");
  add_survey_argument(parser, options->survey);
  add_reading_options(parser, options->reading);
  parser
      .add_option("--output", options->output,
                  "path of the .avg file, .avg is added; the others go beside it")
      .required();
  add_overwrite_flag(parser, "replace files that exist");
  return {parser, [options] { return run_zonge(*options); }};
}

}  // namespace Batch
