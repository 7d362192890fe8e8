// brenlox_batch rhoplus: the merged curves of a line as Rho+ control files, with the batch file that runs
// them.
#include <iostream>
#include <memory>
#include <optional>

#include "batch/command.h"
#include "batch/reading_option.h"
#include "batch/rhoplus_option.h"
#include "batch/rotate_option.h"
#include "core/user_interface.h"
#include "output/rhoplus.h"

namespace Batch {
namespace {

struct RhoplusOptions {
  std::string survey;
  Module_database::LineSelection reading;
  std::string directory;
  Module_output::RhoplusSettings settings;
  std::optional<double> strike;
};

int write_line(const RhoplusOptions& options) {
  Module_output::RhoplusCounts counts;
  const int status = Module_output::output_rhoplus(options.reading, options.directory, options.settings, {},
                                                   counts, options.strike);
  if (status == 0 && counts.stopped) {
    user_interface().show_message("Stopped; the batch file holds the stations written so far");
  }
  if (status == 0) {
    std::cout << Module_output::rhoplus_summary(counts, options.settings, options.directory) << '\n';
  }
  return counts.stopped ? -1 : status;
}

int run_rhoplus(RhoplusOptions& options) {
  options.directory = path_from_here(options.directory);
  return with_open_survey(options.survey, options.reading.line, [&] { return write_line(options); });
}

}  // namespace

Command add_rhoplus_command(Program& program) {
  const auto options = std::make_shared<RhoplusOptions>();
  Parser parser = program.add_command("rhoplus", "Writes the merged curves of a line as Rho+ control files");
  add_survey_argument(parser, options->survey);
  add_reading_options(parser, options->reading);
  parser.add_option("--directory", options->directory, "folder of the files, created if it is missing")
      .required();
  add_rhoplus_options(parser, options->settings);
  add_rotate_option(
      parser, options->strike,
      "azimuth of the strike, degrees from north, that the tensors are rotated to: ExHy is then the "
      "element whose electric field is along the strike, EyHx the one across");
  return {parser, [options] { return run_rhoplus(*options); }};
}

}  // namespace Batch
