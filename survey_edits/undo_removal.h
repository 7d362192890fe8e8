// undo_removal.h: putting back what the last removal has taken out.
#pragma once
#include <string>

#include "reduction/each_item.h"

namespace Module_survey_edits {

/// Whether a removal can be undone: until the next one, a renaming or the survey's end.
bool removal_can_be_undone();

/// Puts back what the last removal has taken out. If nothing was stored in the survey since, all tables are
/// as before in every byte. Else averages and merged curves are computed again, and rows whose numbers are
/// taken get others; readings of a file that was imported again since stay out. One transaction: a failure,
/// after its message, or a stop leaves the survey as it was, and the removal can still be undone.
/// @param told what was done, for the user
[[nodiscard]] Module_averaged_data::Outcome undo_removal(std::string& told);

}  // namespace Module_survey_edits
