#include "reduction/edits/exchange_command.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "platform/dao/case_folding.h"
#include "reduction/derived_rows.h"
#include "reduction/edits/derived_snapshot.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoReduction;

namespace {

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

KeyOrder order_of(const ReadingKey& key) {
  return {
      dao::folded_text(key.line), key.station, key.reference_type, key.data_type, key.dipole, key.scan_rate};
}

/// Notes the key of a reading, with what its derived rows hold before anything is written.
void note_key(const UndoEntry& entry, CommandExchange& exchange) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(entry.id, "0"));
  if (rows.no_match()) {
    return;
  }
  const ReadingKey key = key_of_row(rows);
  const ReduceFrom from = follows_from(entry, rows.get_long("ReductionType"));
  EditedKey& edited =
      exchange.keys.try_emplace(order_of(key), EditedKey{key, from, entry.reduction, nullptr, {}})
          .first->second;
  edited.from = std::min(edited.from, from);
  if (edited.before == nullptr && from != ReduceFrom::nothing) {
    edited.before = std::make_shared<const UndoReduction>(snapshot_of(place_of(key), key));
  }
}

void write_entry(const UndoEntry& entry, CommandExchange& exchange) {
  if (auto row = exchange_row(entry)) {
    row->earlier.command = entry.command;
    row->earlier.reduction = exchange.keys.at(order_of(row->key)).before;
    exchange.written.push_back({entry, std::move(*row)});
  }
}

Outcome reduce_keys(std::map<KeyOrder, EditedKey>& keys) {
  Module_database::FrequencyLists lists;
  WorkProgress progress("Calculating", keys.size());
  auto next = keys.begin();
  return each_item(progress, [&](std::size_t) {
    EditedKey& edited = (next++)->second;
    const std::int32_t type = edited.key.reference_type;
    const Frequencies& frequencies =
        type == session().current_reference_type ? session().frequencies : lists.of(type);
    return reduce_station(edited.from, edited.key, frequencies, edited.reduced, edited.restore.get());
  });
}

}  // namespace

Outcome exchange_command(std::span<const UndoEntry> command, CommandExchange& exchange) {
  Module_database::require_writable();
  dao::Transaction transaction(Module_database::open_survey().database);
  for (const UndoEntry& entry : command) {
    note_key(entry, exchange);
  }
  for (auto entry = command.rbegin(); entry != command.rend(); ++entry) {
    write_entry(*entry, exchange);
  }
  const Outcome outcome = reduce_keys(exchange.keys);
  if (outcome == Outcome::finished) {
    transaction.commit();
  }
  return outcome;
}

}  // namespace Module_averaged_data
