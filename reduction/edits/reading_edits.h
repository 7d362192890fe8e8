// reading_edits.h: edits of stored readings together with what follows from them.
//
// Use flags, masks or static factor of some readings and the average and merged curve that follow are written
// in one transaction: after a kill the survey holds all of them or none.
#pragma once
#include <optional>
#include <span>
#include <string_view>

#include "core/undo_stack.h"
#include "reduction/edits/recalculate_station.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoEntry;

/// How an edit ended, which is what the survey holds. A failure comes after a message and leaves survey, undo
/// and data sets as before. An edit that is in the survey has changed it, also where the data sets couldn't
/// follow, which has a message of its own.
enum class Edit { nothing, changed, failed };

/// What a row held before an entry was written into it, and whose row it is.
struct ExchangedRow {
  UndoEntry earlier;
  ReadingKey key;
  std::int32_t ReductionType = 0;
  std::vector<float> frequencies;  // Hz, of the row
};

/// Writes what an entry holds into its reading; masks only where the row still has as many frequencies.
/// @return nothing if the reading is gone. Throws dao::Error.
std::optional<ExchangedRow> exchange_row(const UndoEntry& entry);

/// Copies an entry that was written into the survey into all data sets that show its reading.
void show_entry(const UndoEntry& entry, const ExchangedRow& row);

/// Writes new values into readings, computes again what follows from them for a key, keeps the earlier values
/// to be undone as one command, and brings the data sets up to date. A reading that is gone is skipped.
/// @param fixed_text begins the message of a failure
[[nodiscard]] Edit edit_readings(std::string_view fixed_text, std::span<const UndoEntry> entries,
                                 ReduceFrom from, const ReadingKey& key);

}  // namespace Module_averaged_data
