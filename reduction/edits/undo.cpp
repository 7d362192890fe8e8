#include "reduction/edits/undo.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "reduction/data_sets/curve_parts.h"
#include "reduction/derived_rows.h"
#include "reduction/edits/derived_snapshot.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoReduction;

namespace {

/// The readings of one key in a command: they are reduced once.
struct EditedKey {
  ReadingKey key;
  ReduceFrom from = ReduceFrom::nothing;
  std::shared_ptr<const UndoReduction> restore;  // what the derived rows shall hold again
  std::shared_ptr<const UndoReduction> before;   // what they hold now
  ReducedStation reduced;
};

struct WrittenEntry {
  UndoEntry entry;
  ExchangedRow row;
};

/// A command on its way back into the survey.
struct Exchange {
  std::vector<EditedKey> keys;
  std::vector<WrittenEntry> written;  // the last one of the command first
};

/// What an edit of a reading changes beyond its row: a static factor nothing, an edit of a repeat or an
/// average both derived rows, one of a merged curve that curve, unless the edit computed nothing again.
ReduceFrom follows_from(const UndoEntry& entry, std::int32_t ReductionType) {
  if (std::holds_alternative<Module_Brenlox::UndoStatic>(entry.earlier)) {
    return ReduceFrom::nothing;
  }
  if (ReductionType != reduction_merged) {
    return ReduceFrom::repeats;
  }
  return entry.reduction == nullptr ? ReduceFrom::nothing : ReduceFrom::averages;
}

StationRows place_of(const ReadingKey& key) {
  return Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
}

EditedKey* find_key(Exchange& exchange, const ReadingKey& key) {
  const auto found = std::ranges::find_if(exchange.keys, [&](const EditedKey& noted) {
    return same_station(noted.key, key) && noted.key.scan_rate == key.scan_rate;
  });
  return found == exchange.keys.end() ? nullptr : &*found;
}

/// Notes the key of a reading, with what its derived rows hold before anything is written.
void note_key(const UndoEntry& entry, Exchange& exchange) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(entry.id, "0"));
  if (rows.no_match()) {
    return;
  }
  const ReadingKey key = key_of_row(rows);
  const ReduceFrom from = follows_from(entry, rows.get_long("ReductionType"));
  EditedKey* found = find_key(exchange, key);
  if (found == nullptr) {
    found = &exchange.keys.emplace_back(EditedKey{key, from, entry.reduction, nullptr, {}});
  }
  found->from = std::min(found->from, from);
  if (found->before == nullptr && entry.reduction != nullptr) {
    found->before = std::make_shared<const UndoReduction>(snapshot_of(place_of(key), key));
  }
}

/// Writes all entries of a command and computes again what follows. @return 0, or -1 after a message
int exchange_command(std::span<const UndoEntry> command, Exchange& exchange) {
  Module_database::require_writable();
  dao::Transaction transaction(Module_database::open_survey().database);
  for (const UndoEntry& entry : command) {
    note_key(entry, exchange);
  }
  for (auto entry = command.rbegin(); entry != command.rend(); ++entry) {
    if (auto row = exchange_row(*entry)) {
      row->earlier.command = entry->command;
      row->earlier.reduction = find_key(exchange, row->key)->before;
      exchange.written.push_back({*entry, std::move(*row)});
    }
  }
  for (EditedKey& edited : exchange.keys) {
    if (reduce_station(edited.from, edited.key, frequencies_of(edited.key), edited.reduced,
                       edited.restore.get()) != 0) {
      return -1;
    }
  }
  transaction.commit();
  return 0;
}

std::int32_t station_index_of(const ReadingKey& key) {
  const SessionState& state = session();
  for (std::size_t i = 0; i < state.station_value.size(); ++i) {
    if (state.station_value[i] == key.station && same_line(state.station_line[i], key.line)) {
      return static_cast<std::int32_t>(i) + 1;
    }
  }
  return -1;
}

/// Makes the selection that of a reading; the next display of its station loads everything that belongs to
/// it.
/// @return true if another line, reference type, data type or dipole was selected
bool select_reading(const ReadingKey& key) {
  SessionState& state = session();
  ReadingKey selected = selected_key();
  selected.station = key.station;
  const bool other = !same_station(selected, key);
  if (other) {
    state.current_line.clear();
  }
  if (!Module_database::is_tipper(key.data_type)) {  // no list has it and no graph shows it
    state.current_data_type = key.data_type;
  }
  state.current_dipole = key.dipole;
  state.current_station_index = -1;
  state.current_station = no_current_station;
  state.repeat_count = 0;
  if (other || key.scan_rate > 0.0F) {  // a merged curve belongs to whatever rate is shown
    state.current_scan_rate = decimal_of_single(key.scan_rate);
  }
  return other;
}

int select_reference_type(std::int32_t reference_type) {
  if (session().current_reference_type == reference_type) {
    return 0;
  }
  session().current_reference_type = reference_type;
  return Module_database::load_selected_frequencies();
}

bool removes_merged(const EditedKey& edited) {
  return edited.restore != nullptr && edited.restore->merged.id == 0 && edited.before != nullptr &&
         edited.before->merged.id != 0;
}

/// How far a reading is from what is shown: 0 it belongs to the station and curves that are, 1 to those
/// curves of the line's other stations, 2 to another line or other curves.
int distance_from_selection(const ReadingKey& key) {
  ReadingKey selected = selected_key();
  if (same_station(selected, key)) {
    return 0;
  }
  selected.station = key.station;
  return same_station(selected, key) ? 1 : 2;
}

/// The key to show after a command, which may be of many stations and data types: who looks at one of its
/// curves stays there.
const ReadingKey& key_to_show(const Exchange& exchange) {
  return std::ranges::min_element(
             exchange.written, {},
             [](const WrittenEntry& each) { return distance_from_selection(each.row.key); })
      ->row.key;
}

/// Brings data sets and selection up to date with what was written.
UndoResult show_exchange(const Exchange& exchange) {
  int shown = 0;
  bool profile_is_current = true;
  for (const WrittenEntry& each : exchange.written) {
    show_entry(each.entry, each.row);
  }
  for (const EditedKey& edited : exchange.keys) {
    shown |= show_reduced_station(edited.key, session().frequencies, edited.reduced);
    profile_is_current = profile_is_current && !removes_merged(edited);
  }
  const ReadingKey& key = key_to_show(exchange);
  UndoResult result;
  result.station_index = station_index_of(key);
  if (result.station_index > 0) {
    result.other_selection = select_reading(key);
    shown |= select_reference_type(key.reference_type);
  }
  if (!profile_is_current) {
    session().current_line.clear();  // a column has gone: the profile is loaded again
  }
  result.edit = shown == 0 ? Edit::changed : Edit::failed;
  return result;
}

/// Writes a command back, which is in a stack until `finish` or `drop` takes it from there.
/// @param finish is given what the rows held until then
UndoResult write_back(std::span<const UndoEntry> command, void (*finish)(std::vector<UndoEntry>),
                      void (*drop)()) {
  if (command.empty()) {
    return {};
  }
  Exchange exchange;
  if (trap_errors("An error occurred while undoing the change: ",
                  [&] { return exchange_command(command, exchange); }) != 0) {
    return {Edit::failed, -1};
  }
  if (exchange.written.empty()) {
    drop();
    return {Edit::nothing, session().current_station_index};
  }
  const UndoResult result = show_exchange(exchange);
  std::vector<UndoEntry> earlier;
  for (WrittenEntry& each : exchange.written) {
    earlier.push_back(std::move(each.row.earlier));
  }
  finish(std::move(earlier));
  return result;
}

}  // namespace

UndoResult undo_last_change() {
  return write_back(Module_Brenlox::top_undo(), Module_Brenlox::move_to_redo, Module_Brenlox::pop_undo);
}

UndoResult redo_last_change() {
  return write_back(Module_Brenlox::top_redo(), Module_Brenlox::move_to_undo, Module_Brenlox::pop_redo);
}

}  // namespace Module_averaged_data
