// derived_snapshot.h: what average and merged curve of a key hold, for edits that compute them again to be
// undone.
//
// Computing again from the repeats gives the earlier values back, but not what the user had set on a row
// whose number of frequencies has changed in between, nor a mask of absence that an edit has ended.
#pragma once
#include "core/undo_entry.h"
#include "reduction/averages.h"

namespace Module_averaged_data {

/// What both rows hold now. Throws dao::Error.
Module_Brenlox::UndoReduction snapshot_of(const StationRows& place, const ReadingKey& key);

/// Puts masks, flags, offsets and facts of a row back after it was computed again, where it still has as many
/// frequencies; the whole row where there was nothing left to compute it from. A row that there was not is
/// removed. Throws dao::Error.
/// @param computed the row as it was computed, ID 0 if it wasn't; then as it is stored
void restore_average(const Module_Brenlox::UndoReduction& earlier, const StationRows& place,
                     const ReadingKey& key, StoredReading& computed);
void restore_merged(const Module_Brenlox::UndoReduction& earlier, const StationRows& place,
                    const ReadingKey& key, StoredReading& computed);

}  // namespace Module_averaged_data
