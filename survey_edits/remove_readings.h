// remove_readings.h: taking files, stations and lines out of the survey.
#pragma once
#include "reduction/each_item.h"
#include "survey_edits/removal_plan.h"

namespace Module_survey_edits {

/// Takes out what a plan says, with all that is known of it, computes again the averages and merged curves of
/// what remains, and forgets the edits that could be undone. Frequency lists stay. All is one transaction: a
/// failure, after its message, or a stop leaves the survey as it was. What has gone can come back until the
/// next removal, see undo_removal.h.
/// @param contents of the survey as it is now
[[nodiscard]] Module_averaged_data::Outcome remove_readings(const SurveyContents& contents,
                                                            const RemovalPlan& plan);

}  // namespace Module_survey_edits
