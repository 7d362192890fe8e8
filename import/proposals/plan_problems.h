// plan_problems.h: what is wrong with the rows of a plan, alone and among the others.
#pragma once
#include <span>
#include <vector>

#include "import/import_plan.h"
#include "import/proposals/plan_run.h"
#include "import/proposals/scanned_file.h"
#include "import/proposals/survey_before.h"

namespace Module_data_file {

/// Adds to rows, which `run` gave for these files, their problems and remarks. Throws dao::Error.
void find_problems(std::vector<PlannedSection>& rows, std::span<const ScannedFile> files, const PlanRun& run,
                   SurveyBefore& survey);

}  // namespace Module_data_file
