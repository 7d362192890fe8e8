// compute_again.h: averages and merged curves after readings have gone or come.
#pragma once
#include <vector>

#include "database/reading.h"
#include "reduction/each_item.h"
#include "reduction/skipped_groups.h"

namespace Module_survey_edits {

/// Curves to be computed again, each once.
struct TouchedCurves {
  std::vector<Module_database::ReadingKey> averages;
  std::vector<Module_database::ReadingKey> merged;  // scan rate 0
};

/// The averages of these keys, and the merged curves that follow from them.
TouchedCurves touched_curves(std::vector<Module_database::ReadingKey> averages);

/// Computes them again and stores them; one for which nothing is left to compute from goes. A curve that
/// can't be computed keeps its row. Within the caller's transaction. Throws dao::Error.
Module_averaged_data::Outcome compute_again(const TouchedCurves& curves,
                                            Module_averaged_data::WorkProgress& progress,
                                            Module_averaged_data::SkippedGroups& skipped);

}  // namespace Module_survey_edits
