// brenlox_batch recalculate: rebuilds the averages and merged curves of a whole survey.
#include <memory>

#include "batch/command.h"
#include "core/user_interface.h"
#include "reduction/averages.h"

namespace Batch {
namespace {

int recalculate() {
  const int result = Module_averaged_data::recalculate_merged();
  if (result == 0 && user_interface().stop_requested()) {
    user_interface().show_message("Stopped; what was rebuilt by then is kept");
    return -1;
  }
  return result;
}

}  // namespace

Command add_recalculate_command(CLI::App& program) {
  const auto survey = std::make_shared<std::string>();
  CLI::App* parser =
      program.add_subcommand("recalculate", "Rebuilds the averages and merged curves of the whole survey");
  add_survey_argument(*parser, *survey);
  return {parser, [survey] { return with_open_survey(*survey, recalculate); }};
}

}  // namespace Batch
