// undo.h: undoing the newest command, and doing it again.
#pragma once
#include <cstdint>

#include "reduction/edits/reading_edits.h"

namespace Module_averaged_data {

struct UndoResult {
  Edit edit = Edit::nothing;
  /// The station whose readings changed, as a station index from 1; -1 if it is no longer in the survey.
  std::int32_t station_index = -1;
  bool other_selection = false;  // line, reference type, data type or dipole are others than before
};

/// Undoes all edits of the newest command, the last one first, computes again what follows from their
/// readings, and puts back what the user had set on it, in one transaction. The session's selection becomes
/// that of the readings, without a station, so that displaying the station loads what belongs to it. Entries
/// whose readings are gone are dropped.
[[nodiscard]] UndoResult undo_last_change();

/// Does again what was undone last, in the same way.
[[nodiscard]] UndoResult redo_last_change();

}  // namespace Module_averaged_data
