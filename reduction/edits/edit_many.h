// edit_many.h: new values of many readings, of any stations and data types, as one command.
#pragma once
#include <span>

#include "reduction/edits/reading_edits.h"

namespace Module_averaged_data {

/// Writes new masks, use flags or static factors into readings, computes average and merged curve of those
/// that aren't merged again, and keeps the earlier values to be undone as one command. A reading that is gone
/// is skipped; nothing is computed from a merged curve, which keeps what is set on it. With many readings
/// progress is shown and the user may stop, which leaves everything as it was.
/// @return nothing also after a stop
[[nodiscard]] Edit edit_many(std::span<const UndoEntry> entries);

}  // namespace Module_averaged_data
