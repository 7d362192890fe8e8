#include "reduction/edits/reading_edits.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/search_sort.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "platform/dao/case_folding.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/derived_rows.h"
#include "reduction/edits/derived_snapshot.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoFlags;
using Module_Brenlox::UndoMask;
using Module_Brenlox::UndoReduction;
using Module_Brenlox::UndoStatic;

namespace {

/// Writes one kind of value into the row being edited and gives what was there.
struct Exchange {
  dao::Recordset& row;

  UndoFlags operator()(const UndoFlags& flags) const {
    const UndoFlags earlier{row.get_bit("UseReading"), row.get_bit("UseResistivity"),
                            row.get_bit("UsePhase")};
    row.set_bit("UseReading", flags.use_reading);
    row.set_bit("UseResistivity", flags.use_resistivity);
    row.set_bit("UsePhase", flags.use_phase);
    return earlier;
  }
  UndoMask operator()(const UndoMask& mask) const {
    UndoMask earlier{row.get_long("NumFrequencies"), row.get_binary("MaskBinary")};
    if (!mask.mask_bytes.empty() && mask.frequency_count == earlier.frequency_count) {
      row.set_binary("MaskBinary", mask.mask_bytes);
    }
    return earlier;
  }
  UndoStatic operator()(const UndoStatic& factor) const {
    const UndoStatic earlier{row.get_single("ResOffset")};
    row.set_single("ResOffset", factor.res_offset);
    return earlier;
  }
};

template <class Slot>
void set_flags(Slot& slot, const UndoFlags& flags) {
  slot.UseReading = flags.use_reading;
  slot.UseResistivity = flags.use_resistivity;
  slot.UsePhase = flags.use_phase;
}

/// A stored factor of 0 or below reads as 1.
float factor_of(const UndoStatic& stored) { return stored.res_offset > 0.0F ? stored.res_offset : 1.0F; }

void copy_into(StoredReading& reading, const UndoEntry& entry) {
  if (const auto* const flags = std::get_if<UndoFlags>(&entry.earlier)) {
    set_flags(reading, *flags);
  } else if (const auto* const mask = std::get_if<UndoMask>(&entry.earlier)) {
    if (mask->mask_bytes.size() == reading.curve.mask.size() * sizeof(std::int32_t)) {
      reading.curve.mask = Module_database::longs_from(mask->mask_bytes);
    }
  } else {
    reading.ResOffset = factor_of(std::get<UndoStatic>(entry.earlier));
  }
}

void copy_into(ProfileColumn& column, const UndoEntry& entry, const std::vector<float>& frequencies) {
  if (const auto* const flags = std::get_if<UndoFlags>(&entry.earlier)) {
    set_flags(column, *flags);
  } else if (const auto* const factor = std::get_if<UndoStatic>(&entry.earlier)) {
    column.ResOffset = factor_of(*factor);
  } else {
    const auto mask = Module_database::longs_from(std::get<UndoMask>(entry.earlier).mask_bytes);
    for (std::size_t i = 0; i < frequencies.size() && 2 * i + 1 < mask.size(); ++i) {
      const int at = basSearchSort::search_sorted(data_sets().profile.frequencies, frequencies[i]);
      if (at >= 0) {
        column.mask[static_cast<std::size_t>(at)] = {std::min(mask[2 * i], 1), std::min(mask[2 * i + 1], 1)};
      }
    }
  }
}

struct Written {
  UndoEntry entry;
  ExchangedRow row;
};

/// @return false if all readings are gone
bool write_all(std::span<const UndoEntry> entries, std::vector<Written>& written) {
  for (const UndoEntry& entry : entries) {
    if (auto row = exchange_row(entry)) {
      written.push_back({entry, std::move(*row)});
    }
  }
  return !written.empty();
}

std::string owner_of(const ReadingKey& key, std::int32_t ReductionType) {
  std::string owner = dao::folded_text(key.line) + "|" + key.data_type;
  for (const double part : {key.station, double{key.scan_rate}, double{key.dipole}}) {
    owner += "|" + plain_text(part);
  }
  return owner + "|" + plain_text(key.reference_type) + "|" + plain_text(ReductionType);
}

}  // namespace

std::optional<ExchangedRow> exchange_row(const UndoEntry& entry) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + format_number(entry.id, "0"));
  if (rows.no_match()) {
    return std::nullopt;
  }
  ExchangedRow result;
  result.key = key_of_row(rows);
  result.ReductionType = rows.get_long("ReductionType");
  result.earlier.owner = owner_of(result.key, result.ReductionType);
  if (!entry.owner.empty() && entry.owner != result.earlier.owner) {
    return std::nullopt;
  }
  result.frequencies = Module_database::singles_from(rows.get_binary("FreqBinary"));
  result.earlier.id = entry.id;
  rows.edit();
  const Exchange exchange{rows};
  std::visit([&](const auto& value) { result.earlier.earlier = exchange(value); }, entry.earlier);
  rows.update();
  session().data_changed = true;
  return result;
}

void show_entry(const UndoEntry& entry, const ExchangedRow& row) {
  for (RepeatSlot& slot : data_sets().repeats.slots) {
    if (slot.reading.ID == entry.id) {
      copy_into(slot.reading, entry);
    }
  }
  for (StationSlot& slot : data_sets().station.slots) {
    if (slot.reading.ID == entry.id) {
      copy_into(slot.reading, entry);
    }
  }
  for (ProfileColumn& column : data_sets().profile.columns) {
    if (column.ID == entry.id) {
      copy_into(column, entry, row.frequencies);
    }
  }
}

Edit edit_readings(std::string_view fixed_text, std::span<const UndoEntry> entries, ReduceFrom from,
                   const ReadingKey& key) {
  std::vector<Written> written;
  ReducedStation reduced;
  std::shared_ptr<const UndoReduction> before;
  const int status = trap_errors(fixed_text, [&] {
    Module_database::require_writable();
    dao::Transaction transaction(Module_database::open_survey().database);
    if (from != ReduceFrom::nothing) {
      before = std::make_shared<const UndoReduction>(snapshot_of(
          Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station),
          key));
    }
    if (!write_all(entries, written)) {
      return 0;
    }
    if (reduce_station(from, key, session().frequencies, reduced) != 0) {
      return -1;
    }
    transaction.commit();
    return 0;
  });
  if (status != 0) {
    return Edit::failed;
  }
  if (written.empty()) {
    return Edit::nothing;
  }
  std::vector<UndoEntry> earlier;
  for (Written& each : written) {
    show_entry(each.entry, each.row);
    each.row.earlier.reduction = before;
    earlier.push_back(std::move(each.row.earlier));
  }
  Module_Brenlox::push_undo_command(std::move(earlier));
  (void)show_reduced_station(key, session().frequencies, reduced);  // the edit is in the survey
  return Edit::changed;
}

}  // namespace Module_averaged_data
