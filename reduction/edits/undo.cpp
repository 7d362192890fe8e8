#include "reduction/edits/undo.h"

#include <optional>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

/// What an edit of a reading changes beyond its row: a static factor nothing, a mask or a flag of a repeat
/// its average and all that follows, of an average the merged curve.
ReduceFrom follows_from(const UndoEntry& entry, std::int32_t ReductionType) {
  if (std::holds_alternative<Module_Brenlox::UndoStatic>(entry.earlier) ||
      ReductionType == reduction_merged) {
    return ReduceFrom::nothing;
  }
  return ReductionType == reduction_averaged ? ReduceFrom::averages : ReduceFrom::repeats;
}

std::int32_t station_index_of(const ReadingKey& key) {
  const SessionState& state = session();
  for (std::size_t i = 0; i < state.station_value.size(); ++i) {
    if (state.station_value[i] == key.station && equal_ignoring_case(state.station_line[i], key.line)) {
      return static_cast<std::int32_t>(i) + 1;
    }
  }
  return -1;
}

/// Lets the next display of a station load everything that belongs to it.
void leave_station(const ReadingKey& key) {
  session().current_station_index = -1;
  session().current_station = no_current_station;
  session().repeat_count = 0;
  session().current_scan_rate = decimal_of_single(key.scan_rate);
}

/// Writes an entry back, which may be in a stack until `finish` or `drop` takes it from there.
/// @param finish is given what the row held until then
template <class Finish>
UndoResult write_back(const UndoEntry& entry, Finish&& finish, void (*drop)()) {
  const Frequencies& frequencies = session().frequencies;
  std::optional<ExchangedRow> row;
  ReducedStation reduced;
  const int status = trap_errors("An error occurred while undoing the change: ", [&] {
    Module_database::require_writable();
    dao::Transaction transaction(Module_database::open_survey().database);
    row = exchange_row(entry);
    if (!row) {
      return 0;
    }
    if (reduce_station(follows_from(entry, row->ReductionType), row->key, frequencies, reduced) != 0) {
      return -1;
    }
    transaction.commit();
    return 0;
  });
  if (status != 0) {
    return {Edit::failed, -1};
  }
  if (!row) {
    drop();
    return {Edit::nothing, session().current_station_index};
  }
  show_entry(entry, *row);
  const int shown = show_reduced_station(row->key, frequencies, reduced);
  const UndoResult result{shown == 0 ? Edit::changed : Edit::failed, station_index_of(row->key)};
  leave_station(row->key);
  finish(std::move(row->earlier));
  return result;
}

}  // namespace

UndoResult undo_last_change() {
  if (Module_Brenlox::undo_count() == 0) {
    return {};
  }
  return write_back(Module_Brenlox::top_undo(), Module_Brenlox::move_to_redo, Module_Brenlox::pop_undo);
}

UndoResult redo_last_change() {
  if (Module_Brenlox::redo_count() == 0) {
    return {};
  }
  return write_back(Module_Brenlox::top_redo(), Module_Brenlox::move_to_undo, Module_Brenlox::pop_redo);
}

}  // namespace Module_averaged_data
