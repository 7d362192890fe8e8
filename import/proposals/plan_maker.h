// plan_maker.h: from scanned files and choices to the rows that an import would store.
#pragma once
#include <memory>
#include <span>
#include <vector>

#include "import/import_choices.h"
#include "import/import_plan.h"
#include "import/proposals/scanned_file.h"

namespace Module_data_file {

class SurveyBefore;

/// Makes plans of an import into the survey that is open when it is made, or into a new one if none is. It
/// asks the survey for each line once, so that a plan can be made again at each key: make a new one when the
/// survey has changed.
class PlanMaker {
 public:
  /// Throws dao::Error.
  PlanMaker();
  PlanMaker(const PlanMaker&) = delete;
  PlanMaker& operator=(const PlanMaker&) = delete;
  ~PlanMaker();

  /// The rows of all files. Choices with a fault give a plan, too, with what can be made of them. Throws
  /// dao::Error.
  ImportPlan plan(std::span<const ScannedFile> files, const ImportChoices& choices,
                  std::span<const PlannedEdit> edits = {});

  [[nodiscard]] SurveyBefore& survey() { return *survey_; }

 private:
  std::unique_ptr<SurveyBefore> survey_;
};

}  // namespace Module_data_file
