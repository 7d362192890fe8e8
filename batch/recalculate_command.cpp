// brenlox_batch recalculate: rebuilds the averages and merged curves of a whole survey.
#include <memory>

#include "batch/command.h"
#include "reduction/averages.h"

namespace Batch {
namespace {

int recalculate() {
  const int result = Module_averaged_data::recalculate_merged();
  return result == 0 && report_stop("Stopped; what was rebuilt by then is kept") ? -1 : result;
}

}  // namespace

Command add_recalculate_command(Program& program) {
  const auto survey = std::make_shared<std::string>();
  Parser parser =
      program.add_command("recalculate", "Rebuilds the averages and merged curves of the whole survey");
  add_survey_argument(parser, *survey);
  return {parser, [survey] { return with_open_survey(*survey, recalculate); }};
}

}  // namespace Batch
