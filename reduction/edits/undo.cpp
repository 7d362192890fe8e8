#include "reduction/edits/undo.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/frequency_store.h"
#include "reduction/data_sets/curve_parts.h"
#include "reduction/edits/exchange_command.h"

namespace Module_averaged_data {

namespace {

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
const ReadingKey& key_to_show(const CommandExchange& exchange) {
  return std::ranges::min_element(
             exchange.written, {},
             [](const WrittenEntry& each) { return distance_from_selection(each.row.key); })
      ->row.key;
}

/// Brings data sets and selection up to date with what was written.
UndoResult show_exchange(const CommandExchange& exchange) {
  bool profile_is_current = true;
  for (const WrittenEntry& each : exchange.written) {
    show_entry(each.entry, each.row);
  }
  for (const auto& [order, edited] : exchange.keys) {
    (void)show_reduced_station(edited.key, session().frequencies, edited.reduced);
    profile_is_current = profile_is_current && !removes_merged(edited);
  }
  const ReadingKey& key = key_to_show(exchange);
  UndoResult result;
  result.station_index = station_index_of(key);
  if (result.station_index > 0) {
    result.other_selection = select_reading(key);
    (void)select_reference_type(key.reference_type);
  }
  if (!profile_is_current) {
    session().current_line.clear();  // a column has gone: the profile is loaded again
  }
  result.edit = Edit::changed;
  return result;
}

/// Long work lets events run, which may look at the stack.
std::vector<UndoEntry> copied(std::span<const UndoEntry> command) { return {command.begin(), command.end()}; }

/// Writes a command back, which is in a stack until `finish` or `drop` takes it from there.
/// @param finish is given what the rows held until then
UndoResult write_back(const std::vector<UndoEntry>& command, void (*finish)(std::vector<UndoEntry>),
                      void (*drop)()) {
  if (command.empty()) {
    return {};
  }
  CommandExchange exchange;
  Outcome outcome = Outcome::failed;
  if (trap_errors("An error occurred while undoing the change: ",
                  [&] { outcome = exchange_command(command, exchange); }) != 0 ||
      outcome == Outcome::failed) {
    return {Edit::failed, -1};
  }
  if (outcome == Outcome::stopped) {
    return {Edit::nothing, session().current_station_index};
  }
  if (exchange.written.empty()) {
    drop();
    return {Edit::nothing, session().current_station_index};
  }
  const UndoResult result = show_exchange(exchange);
  drop_what_is_computed(exchange);
  std::vector<UndoEntry> earlier;
  for (WrittenEntry& each : exchange.written) {
    earlier.push_back(std::move(each.row.earlier));
  }
  finish(std::move(earlier));
  return result;
}

}  // namespace

UndoResult undo_last_change() {
  return write_back(copied(Module_Brenlox::top_undo()), Module_Brenlox::move_to_redo,
                    Module_Brenlox::pop_undo);
}

UndoResult redo_last_change() {
  return write_back(copied(Module_Brenlox::top_redo()), Module_Brenlox::move_to_undo,
                    Module_Brenlox::pop_redo);
}

}  // namespace Module_averaged_data
