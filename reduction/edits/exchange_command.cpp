#include "reduction/edits/exchange_command.h"

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "platform/dao/case_folding.h"
#include "reduction/derived_rows.h"
#include "reduction/edits/derived_snapshot.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoFlags;
using Module_Brenlox::UndoMask;
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

bool only_takes_away(const UndoEntry& before, const UndoEntry& now) {
  if (const auto* const flags = std::get_if<UndoFlags>(&now.earlier)) {
    const auto& earlier = std::get<UndoFlags>(before.earlier);
    return flags->use_reading <= earlier.use_reading && flags->use_resistivity <= earlier.use_resistivity &&
           flags->use_phase <= earlier.use_phase;
  }
  if (const auto* const mask = std::get_if<UndoMask>(&now.earlier)) {
    const auto counts = Module_database::longs_from(mask->mask_bytes);
    const auto counted = Module_database::longs_from(std::get<UndoMask>(before.earlier).mask_bytes);
    return std::ranges::equal(counts, counted, std::less_equal<>());
  }
  return true;  // nothing follows from a static factor
}

void drop_values(Module_Brenlox::UndoDerived& derived) {
  derived.frequency_bytes = {};
  derived.data_bytes = {};
}

int reduce_key(EditedKey& edited, Module_database::FrequencyLists& lists) {
  const std::int32_t type = edited.key.reference_type;
  const Frequencies& frequencies =
      type == session().current_reference_type ? session().frequencies : lists.of(type);
  return reduce_station(edited.from, edited.key, frequencies, edited.reduced, edited.restore.get());
}

/// Notes, writes and reduces on one display, a third for each: there are as many steps of each kind, and the
/// keys, of which there are as many as entries or fewer, are spread over the steps of the last one.
Outcome do_steps(std::span<const UndoEntry> command, CommandExchange& exchange) {
  constexpr std::size_t kinds = 3;
  const std::size_t count = command.size();
  Module_database::FrequencyLists lists;
  auto next = exchange.keys.end();
  std::size_t reduced = 0;
  WorkProgress progress("Calculating", kinds * count);
  return each_item(progress, [&](std::size_t step) {
    if (step < count) {
      note_key(command[step], exchange);
      return 0;
    }
    if (step < 2 * count) {
      write_entry(command[2 * count - 1 - step], exchange);
      next = exchange.keys.begin();
      return 0;
    }
    const std::size_t until = exchange.keys.size() * (step + 1 - 2 * count) / count;
    for (; reduced < until; ++reduced, ++next) {
      if (reduce_key(next->second, lists) != 0) {
        return -1;
      }
    }
    return 0;
  });
}

}  // namespace

Outcome exchange_command(std::span<const UndoEntry> command, CommandExchange& exchange) {
  Module_database::require_writable();
  dao::Transaction transaction(Module_database::open_survey().database);
  const Outcome outcome = do_steps(command, exchange);
  if (outcome == Outcome::finished) {
    transaction.commit();
  }
  return outcome;
}

void drop_what_is_computed(CommandExchange& exchange) {
  std::set<const UndoReduction*> added_to;
  for (const WrittenEntry& each : exchange.written) {
    if (!only_takes_away(each.row.earlier, each.entry)) {
      added_to.insert(each.row.earlier.reduction.get());
    }
  }
  std::map<const UndoReduction*, std::shared_ptr<const UndoReduction>> slim;
  for (auto& [order, edited] : exchange.keys) {
    if (edited.before != nullptr && !added_to.contains(edited.before.get())) {
      UndoReduction kept = *edited.before;
      if (edited.reduced.average.ID != 0) {
        drop_values(kept.average);
      }
      if (edited.reduced.merged.ID != 0) {
        drop_values(kept.merged);
      }
      slim[edited.before.get()] = std::make_shared<const UndoReduction>(std::move(kept));
    }
  }
  for (WrittenEntry& each : exchange.written) {
    if (const auto found = slim.find(each.row.earlier.reduction.get()); found != slim.end()) {
      each.row.earlier.reduction = found->second;
    }
  }
}

}  // namespace Module_averaged_data
