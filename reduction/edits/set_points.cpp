#include "reduction/edits/set_points.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "core/user_interface.h"
#include "database/survey_database.h"
#include "reduction/data_sets/curve_parts.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"
#include "reduction/edits/derived_snapshot.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoMask;
using Module_Brenlox::UndoReduction;
using Module_database::Curve;

namespace {

struct Written {
  UndoEntry entry;
  ExchangedRow row;
};

/// A key whose derived curves follow from what is written.
struct ReducedKey {
  ReadingKey key;
  std::shared_ptr<const UndoReduction> before;
  ReducedStation reduced;
};

struct Command {
  std::vector<Written> written;
  std::vector<ReducedKey> keys;
};

/// All points of the frequency: a curve may hold one twice, and both are shown as one choice.
/// @return whether the mask changes
bool set_point(Curve& curve, const PointMask& point) {
  const int field = static_cast<int>(point.component) + 1;
  const std::int32_t value = point.counts ? 1 : 0;
  bool changed = false;
  for (std::size_t at = 0; at < curve.count(); ++at) {
    // A value that isn't there would stay masked, unseen, when it comes back.
    if (curve.frequencies[at] == point.frequency && curve.is_present(field, at)) {
      changed = std::exchange(curve.counts_at(field, at), value) != value || changed;
    }
  }
  return changed;
}

/// The curve's new mask; nothing if none of its points changes.
std::optional<UndoEntry> entry_of(const CurvePoints& wanted) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(wanted.ID, "0"));
  if (rows.no_match()) {
    return std::nullopt;
  }
  Curve curve = Module_database::read_reading(rows).curve;
  bool changed = false;
  for (const PointMask& point : wanted.points) {
    changed = set_point(curve, point) || changed;
  }
  if (!changed) {
    return std::nullopt;
  }
  const auto bytes = Module_database::bytes_of(curve.mask);
  return UndoEntry{wanted.ID,
                   UndoMask{static_cast<std::int32_t>(curve.count()), {bytes.begin(), bytes.end()}}};
}

ReducedKey* find_key(Command& command, const ReadingKey& key) {
  const auto found = std::ranges::find_if(command.keys, [&](const ReducedKey& each) {
    return same_station(each.key, key) && each.key.scan_rate == key.scan_rate;
  });
  return found == command.keys.end() ? nullptr : &*found;
}

/// Keeps what the derived rows of a reading hold, before any curve of the command is written.
void note_key(std::int32_t ID, Command& command) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(ID, "0"));
  if (rows.no_match() || rows.get_long("ReductionType") == Module_database::reduction_merged) {
    return;
  }
  const ReadingKey key = key_of_row(rows);
  if (find_key(command, key) == nullptr) {
    const auto place =
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
    command.keys.push_back({key, std::make_shared<const UndoReduction>(snapshot_of(place, key)), {}});
  }
}

/// @return 0, or -1 after a message
int reduce_keys(Command& command) {
  for (ReducedKey& each : command.keys) {
    if (reduce_station(ReduceFrom::repeats, each.key, frequencies_of(each.key), each.reduced) != 0) {
      return -1;
    }
  }
  return 0;
}

void write_curve_masks(const CurvePoints& wanted, Command& command) {
  if (const auto entry = entry_of(wanted)) {
    if (auto row = exchange_row(*entry)) {
      command.written.push_back({*entry, std::move(*row)});
    }
  }
}

/// Everything in one transaction, or after a stop nothing. What is there to be undone is noted for all curves
/// before the first is written: two of them may belong to one station.
Outcome write_all(std::span<const CurvePoints> curves, Command& command) {
  Module_database::require_writable();
  dao::Transaction transaction(Module_database::open_survey().database);
  WorkProgress progress("Setting masks", 2 * curves.size());
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    if (index < curves.size()) {
      note_key(curves[index].ID, command);
    } else {
      write_curve_masks(curves[index - curves.size()], command);
    }
    return 0;
  });
  if (outcome != Outcome::finished || command.written.empty()) {
    return outcome;
  }
  if (reduce_keys(command) != 0) {
    return Outcome::failed;
  }
  transaction.commit();
  return outcome;
}

void keep_to_undo(Command& command) {
  const std::int32_t number = Module_Brenlox::next_undo_command();
  for (Written& each : command.written) {
    show_entry(each.entry, each.row);
    each.row.earlier.command = number;
    if (const ReducedKey* const key = find_key(command, each.row.key)) {
      each.row.earlier.reduction = key->before;
    }
    Module_Brenlox::push_undo(std::move(each.row.earlier));
  }
}

}  // namespace

Edit set_points(std::span<const CurvePoints> curves) {
  const BusyPointer busy;
  Command command;
  Outcome outcome = Outcome::failed;
  if (trap_errors("An error occurred while storing the change: ",
                  [&] { outcome = write_all(curves, command); }) != 0) {
    return Edit::failed;
  }
  if (outcome == Outcome::failed) {
    return Edit::failed;
  }
  if (outcome != Outcome::finished || command.written.empty()) {
    return Edit::nothing;
  }
  keep_to_undo(command);
  int shown = 0;
  for (const ReducedKey& each : command.keys) {
    shown |= show_reduced_station(each.key, session().frequencies, each.reduced);
  }
  return shown == 0 ? Edit::changed : Edit::failed;
}

}  // namespace Module_averaged_data
