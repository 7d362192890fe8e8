#include "reduction/edits/set_points.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "core/user_interface.h"
#include "database/survey_database.h"
#include "reduction/each_item.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoMask;
using Module_database::Curve;

namespace {

struct Written {
  UndoEntry entry;
  ExchangedRow row;
};

/// @return whether the mask changes
bool set_point(Curve& curve, const PointMask& point) {
  const auto found = std::ranges::find(curve.frequencies, point.frequency);
  const auto at = static_cast<std::size_t>(found - curve.frequencies.begin());
  const int field = static_cast<int>(point.component) + 1;
  // A value that isn't there would stay masked, unseen, when it comes back.
  if (found == curve.frequencies.end() || !curve.is_present(field, at)) {
    return false;
  }
  const std::int32_t value = point.counts ? 1 : 0;
  return std::exchange(curve.counts_at(field, at), value) != value;
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

void write_curve_masks(const CurvePoints& wanted, std::vector<Written>& written) {
  if (auto entry = entry_of(wanted)) {
    if (auto row = exchange_row(*entry)) {
      written.push_back({std::move(*entry), std::move(*row)});
    }
  }
}

/// Everything in one transaction, or after a stop nothing.
Outcome write_all(std::span<const CurvePoints> curves, std::vector<Written>& written) {
  Module_database::require_writable();
  dao::Transaction transaction(Module_database::open_survey().database);
  WorkProgress progress("Setting masks", curves.size());
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    write_curve_masks(curves[index], written);
    return 0;
  });
  if (outcome == Outcome::finished) {
    transaction.commit();
  }
  return outcome;
}

}  // namespace

Edit set_merged_points(std::span<const CurvePoints> curves) {
  const BusyPointer busy;
  std::vector<Written> written;
  Outcome outcome = Outcome::failed;
  if (trap_errors("An error occurred while storing the change: ",
                  [&] { outcome = write_all(curves, written); }) != 0) {
    return Edit::failed;
  }
  if (outcome != Outcome::finished || written.empty()) {
    return Edit::nothing;
  }
  const std::int32_t command = Module_Brenlox::next_undo_command();
  for (Written& each : written) {
    show_entry(each.entry, each.row);
    each.row.earlier.command = command;
    Module_Brenlox::push_undo(std::move(each.row.earlier));
  }
  return Edit::changed;
}

}  // namespace Module_averaged_data
