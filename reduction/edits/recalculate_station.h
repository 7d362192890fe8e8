// recalculate_station.h: what follows from an edit: the average, the merged curve, and both in the data sets.
#pragma once
#include "core/undo_entry.h"
#include "reduction/averages.h"

namespace Module_averaged_data {

/// Where the reduction of a station starts: at the repeats, at the averages, or not at all, because the edit
/// changed nothing that is computed from.
enum class ReduceFrom { repeats, averages, nothing };

/// The derived readings that were computed again; ID 0 for one that wasn't.
struct ReducedStation {
  StoredReading average;
  StoredReading merged;
};

/// Computes average and merged curve of a key again and stores them; the data sets stay as they are.
/// @param earlier if not null, what the user had set on each of the two is put back before the next step
/// @return 0, or -1 after a message
[[nodiscard]] int reduce_station(ReduceFrom from, const ReadingKey& key, const Frequencies& frequencies,
                                 ReducedStation& reduced,
                                 const Module_Brenlox::UndoReduction* earlier = nullptr);

/// Copies into the data sets what reduce_station has computed, as far as they show it.
/// @return 0, or -1 after a message
[[nodiscard]] int show_reduced_station(const ReadingKey& key, const Frequencies& frequencies,
                                       const ReducedStation& reduced);

// The same for the selection, for callers that have changed its readings themselves: edits reduce within
// their own transaction.

/// Averages the repeats of the selection and merges its scan rates, and brings the data sets up to date.
/// @return 0, or -1 after a message
[[nodiscard]] int recalculate_station();

/// Merges the scan rates of the selection, and brings the data sets up to date.
/// @return 0, or -1 after a message
[[nodiscard]] int refresh_station_values();

}  // namespace Module_averaged_data
