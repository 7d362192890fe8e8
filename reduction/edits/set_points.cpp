#include "reduction/edits/set_points.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "reduction/each_item.h"
#include "reduction/edits/edit_many.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoMask;
using Module_database::Curve;

namespace {

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
std::optional<UndoEntry> entry_of(std::int32_t ID, const std::vector<PointMask>& points) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(ID, "0"));
  if (rows.no_match()) {
    return std::nullopt;
  }
  Curve curve = Module_database::read_reading(rows).curve;
  bool changed = false;
  for (const PointMask& point : points) {
    changed = set_point(curve, point) || changed;
  }
  if (!changed) {
    return std::nullopt;
  }
  const auto bytes = Module_database::bytes_of(curve.mask);
  return UndoEntry{ID, UndoMask{static_cast<std::int32_t>(curve.count()), {bytes.begin(), bytes.end()}}};
}

/// @return stopped by the user, or finished. Throws dao::Error.
Outcome make_entries(std::span<const CurvePoints> curves, std::vector<UndoEntry>& entries) {
  std::map<std::int32_t, std::vector<PointMask>> by_ID;  // one entry for a curve that is named twice
  for (const CurvePoints& curve : curves) {
    auto& points = by_ID[curve.ID];
    points.insert(points.end(), curve.points.begin(), curve.points.end());
  }
  WorkProgress progress("Setting masks", by_ID.size());
  auto next = by_ID.begin();
  return each_item(progress, [&](std::size_t /*index*/) {
    const auto& [ID, points] = *next++;
    if (auto entry = entry_of(ID, points)) {
      entries.push_back(std::move(*entry));
    }
    return 0;
  });
}

}  // namespace

Edit set_points(std::span<const CurvePoints> curves) {
  const BusyPointer busy;
  std::vector<UndoEntry> entries;
  Outcome outcome = Outcome::failed;
  if (trap_errors("An error occurred while storing the change: ",
                  [&] { outcome = make_entries(curves, entries); }) != 0 ||
      outcome == Outcome::failed) {
    return Edit::failed;
  }
  return outcome == Outcome::stopped || entries.empty() ? Edit::nothing : edit_many(entries);
}

}  // namespace Module_averaged_data
