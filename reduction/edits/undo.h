// undo.h: undoing the newest edit of a reading, and doing it again.
#pragma once
#include <cstdint>

#include "reduction/edits/reading_edits.h"

namespace Module_averaged_data {

struct UndoResult {
  Edit edit = Edit::nothing;
  /// The station whose reading changed, as a station index from 1; -1 if it is no longer in the survey.
  std::int32_t station_index = -1;
};

/// Undoes the newest edit and computes again what follows from its reading, in one transaction. The profile
/// is brought up to date; no station is selected any more, and the scan rate is that of the reading, so that
/// displaying the station loads its data again. An entry whose reading is gone is dropped.
[[nodiscard]] UndoResult undo_last_change();

/// Does again what was undone last, in the same way.
[[nodiscard]] UndoResult redo_last_change();

}  // namespace Module_averaged_data
