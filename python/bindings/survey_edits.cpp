#include "python/bindings/survey_edits.h"

#include <stdexcept>
#include <utility>

#include "core/number_text.h"
#include "core/undo_entry.h"
#include "database/survey_database.h"
#include "reduction/edits/edit_many.h"

namespace Python {

using Module_averaged_data::Edit;
using Module_Brenlox::UndoEntry;
using Module_Brenlox::UndoFlags;
using Module_Brenlox::UndoMask;
using Module_Brenlox::UndoStatic;
using Module_database::Curve;
using Module_database::StoredReading;

namespace {

StoredReading find_row(std::int32_t ID) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(ID, "0"));
  if (rows.no_match()) {
    throw std::runtime_error("The survey has no reading " + plain_text(ID) + " any more");
  }
  return Module_database::read_reading(rows);
}

/// @return how many points change
std::int64_t set_field(const std::vector<std::uint8_t>& chosen, int field, std::int32_t value, Curve& curve) {
  std::int64_t changed = 0;
  for (std::size_t point = 0; point < chosen.size(); ++point) {
    // A value that isn't there would stay masked, unseen, when it comes back.
    if (chosen[point] != 0 && curve.is_present(field, point) &&
        std::exchange(curve.counts_at(field, point), value) != value) {
      ++changed;
    }
  }
  return changed;
}

std::int64_t stored(std::span<const UndoEntry> entries, std::int64_t changed) {
  switch (Module_averaged_data::edit_many(entries)) {
    case Edit::changed:
      return changed;
    case Edit::nothing:
      return 0;
    case Edit::failed:
      break;
  }
  return -1;
}

bool UndoFlags::*flag_of(ReadingPart part) {
  switch (part) {
    case ReadingPart::resistivity:
      return &UndoFlags::use_resistivity;
    case ReadingPart::phase:
      return &UndoFlags::use_phase;
    case ReadingPart::reading:
      break;
  }
  return &UndoFlags::use_reading;
}

}  // namespace

std::int64_t set_points(std::span<const PointChoice> choices, bool count) {
  Module_database::require_writable();
  std::vector<UndoEntry> entries;
  std::int64_t changed = 0;
  for (const PointChoice& choice : choices) {
    Curve curve = find_row(choice.ID).curve;
    if (curve.frequencies != choice.frequencies) {
      throw std::runtime_error("Reading " + plain_text(choice.ID) +
                               " has other frequencies than when it was read; read it again");
    }
    const std::int32_t value = count ? 1 : 0;
    const std::int64_t points =
        set_field(choice.resistivity, Module_database::field_resistivity, value, curve) +
        set_field(choice.phase, Module_database::field_phase, value, curve);
    if (points > 0) {
      const auto bytes = Module_database::bytes_of(curve.mask);
      entries.push_back(
          {choice.ID, UndoMask{static_cast<std::int32_t>(curve.count()), {bytes.begin(), bytes.end()}}});
    }
    changed += points;
  }
  return stored(entries, changed);
}

std::int64_t set_use(std::span<const std::int32_t> IDs, ReadingPart part, bool use) {
  Module_database::require_writable();
  std::vector<UndoEntry> entries;
  for (const std::int32_t ID : IDs) {
    const StoredReading reading = find_row(ID);
    UndoFlags flags{reading.UseReading, reading.UseResistivity, reading.UsePhase};
    if (std::exchange(flags.*flag_of(part), use) != use) {
      entries.push_back({ID, flags});
    }
  }
  return stored(entries, static_cast<std::int64_t>(entries.size()));
}

std::int64_t set_static_factors(std::span<const std::int32_t> IDs, float factor) {
  Module_database::require_writable();
  std::vector<UndoEntry> entries;
  for (const std::int32_t ID : IDs) {
    if (find_row(ID).ResOffset != factor) {
      entries.push_back({ID, UndoStatic{factor}});
    }
  }
  return stored(entries, static_cast<std::int64_t>(entries.size()));
}

}  // namespace Python
