#include "import/proposals/plan_maker.h"

#include <map>
#include <utility>

#include "import/file_decode.h"
#include "import/proposals/plan_problems.h"
#include "import/proposals/plan_run.h"
#include "import/proposals/survey_before.h"

namespace Module_data_file {

PlanMaker::PlanMaker() : survey_(std::make_unique<SurveyBefore>()) {}

PlanMaker::~PlanMaker() = default;

ImportPlan PlanMaker::plan(std::span<const ScannedFile> files, const ImportChoices& choices,
                           std::span<const PlannedEdit> edits) {
  ImportPlan plan;
  ImportChoices tested = choices;
  plan.fault = choices_fault(tested);  // brings a typed line into its normal form
  PlanRun run(files, tested, edits, *survey_);
  plan.sections = run.rows();
  find_problems(plan.sections, files, run, *survey_);
  return plan;
}

}  // namespace Module_data_file
