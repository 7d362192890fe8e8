#include "reduction/edits/masks.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoFlags;
using Module_Brenlox::UndoMask;
using Module_Brenlox::UndoStatic;
using Module_database::Curve;

namespace {

constexpr std::string_view storing_failed = "An error occurred while storing the change: ";
constexpr double same_frequency = 0.0001;  // Hz: frequencies are shown and typed with four decimals

enum class Range { up_to, from, at };

UndoEntry mask_entry(std::int32_t ID, const std::vector<std::int32_t>& mask) {
  const auto bytes = Module_database::bytes_of(mask);
  return {ID, UndoMask{static_cast<std::int32_t>(mask.size() / Module_database::mask_count),
                       {bytes.begin(), bytes.end()}}};
}

bool includes(OutlierField field, int mask_field) {
  return field == OutlierField::both || static_cast<int>(field) + 1 == mask_field;
}

bool in_range(Range range, double frequency, double limit) {
  switch (range) {
    case Range::up_to:
      return frequency <= limit + same_frequency;
    case Range::from:
      return frequency >= limit - same_frequency;
    case Range::at:
      break;
  }
  return std::fabs(frequency - limit) <= same_frequency;
}

struct MaskRule {
  Range range = Range::from;
  double limit = 0.0;  // Hz
  std::int32_t value = 1;
  OutlierField field = OutlierField::both;
};

MaskRule rule_of(FrequencyCommand command, double frequency, OutlierField field) {
  const int index = static_cast<int>(command);
  if (command == FrequencyCommand::reset_all) {
    return {Range::from, 0.0, 1, field};
  }
  if (command == FrequencyCommand::mask_negative_phases) {
    return {Range::up_to, 0.0, 0, field};
  }
  return {static_cast<Range>(index % 3), frequency, index < 3 ? 0 : 1, field};
}

bool apply_rule(const MaskRule& rule, Curve& curve) {
  bool changed = false;
  for (std::size_t i = 0; i < curve.count(); ++i) {
    if (!in_range(rule.range, decimal_of_single(curve.frequencies[i]), rule.limit)) {
      continue;
    }
    for (int field = 1; field <= Module_database::mask_count; ++field) {
      if (includes(rule.field, field) && curve.counts_at(field, i) == 1 - rule.value) {
        curve.counts_at(field, i) = rule.value;
        changed = true;
      }
    }
  }
  return changed;
}

/// Phases below zero, beyond the frequencies that the rule takes.
bool mask_negative_phases(const MaskRule& rule, Curve& curve) {
  constexpr int phase = Module_database::field_phase;
  bool changed = false;
  for (std::size_t i = 0; i < curve.count(); ++i) {
    if (!in_range(rule.range, decimal_of_single(curve.frequencies[i]), rule.limit) &&
        curve.value(phase, i) < 0.0F && curve.counts_at(phase, i) == 1) {
      curve.counts_at(phase, i) = 0;
      changed = true;
    }
  }
  return changed;
}

/// A repeat's value at one point that outliers are looked for in.
struct Candidate {
  float value;
  std::size_t slot;
};

/// The values that count at a point, ascending; equal ones in the order of their repeats.
std::vector<Candidate> candidates_at(std::size_t point, int field, const std::vector<Curve>& curves) {
  std::vector<Candidate> candidates;
  const std::vector<RepeatSlot>& slots = data_sets().repeats.slots;
  for (std::size_t slot = 1; slot < slots.size(); ++slot) {
    const StoredReading& reading = slots[slot].reading;
    const bool used = reading.UseReading && (field == 1 ? reading.UseResistivity : reading.UsePhase);
    const Curve& curve = curves[slot];
    if (used && point < curve.count() && curve.counts_at(field, point) != 0 &&
        double{curve.value(field, point)} > present_above) {
      candidates.push_back({curve.value(field, point), slot});
    }
  }
  std::ranges::stable_sort(candidates, {}, &Candidate::value);
  return candidates;
}

bool clip_at(std::size_t point, int field, ClipEnds ends, std::size_t count, std::vector<Curve>& curves) {
  const std::vector<Candidate> candidates = candidates_at(point, field, curves);
  if ((ends == ClipEnds::both ? 2 * count : count) >= candidates.size()) {
    return false;
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (ends != ClipEnds::bottom) {
      curves[candidates[candidates.size() - 1 - i].slot].counts_at(field, point) = 0;
    }
    if (ends != ClipEnds::top) {
      curves[candidates[i].slot].counts_at(field, point) = 0;
    }
  }
  return true;
}

/// The masks of all repeats after clipping; empty if no point changes.
std::vector<UndoEntry> clipped_masks(ClipEnds ends, std::size_t count, OutlierField field) {
  const RepeatDataSet& data = data_sets().repeats;
  std::vector<Curve> curves;
  for (const RepeatSlot& slot : data.slots) {
    curves.push_back(slot.reading.curve);
  }
  bool changed = false;
  for (int mask_field = 1; mask_field <= Module_database::mask_count; ++mask_field) {
    for (std::size_t point = 0; includes(field, mask_field) && point < data.maximum_frequencies; ++point) {
      changed = clip_at(point, mask_field, ends, count, curves) || changed;
    }
  }
  std::vector<UndoEntry> entries;
  for (std::size_t slot = 1; changed && slot < data.slots.size(); ++slot) {
    entries.push_back(mask_entry(data.slots[slot].reading.ID, curves[slot].mask));
  }
  return entries;
}

Edit edit_repeats(std::string_view fixed_text, const std::vector<UndoEntry>& entries) {
  if (entries.empty()) {
    return Edit::nothing;
  }
  return edit_readings(fixed_text, entries, ReduceFrom::repeats, data_sets().repeats.key);
}

/// The masks of a reading with one point turned around; empty if there is no such point or it can't be
/// masked: a value that isn't there would stay masked, unseen, when it comes back.
std::vector<std::int32_t> turned_mask(const Curve& curve, std::size_t point, Component component) {
  if (point >= curve.count() || !curve.is_present(static_cast<int>(component) + 1, point)) {
    return {};
  }
  std::vector<std::int32_t> mask = curve.mask;
  std::int32_t& flag = mask[point * Module_database::mask_count + static_cast<std::size_t>(component)];
  if (flag < 0) {
    flag = 1;
  }
  if (flag > 1) {
    return {};
  }
  flag = 1 - flag;
  return mask;
}

Edit toggle(const StoredReading& reading, std::size_t point, Component component, ReduceFrom from,
            const ReadingKey& key) {
  const std::vector<std::int32_t> mask = turned_mask(reading.curve, point, component);
  if (mask.empty()) {
    return Edit::nothing;
  }
  const UndoEntry entry = mask_entry(reading.ID, mask);
  return edit_readings(storing_failed, {&entry, 1}, from, key);
}

UndoEntry use_entry(std::int32_t ID, UndoFlags flags, UseFlag flag, bool use) {
  switch (flag) {
    case UseFlag::reading:
      flags.use_reading = use;
      break;
    case UseFlag::resistivity:
      flags.use_resistivity = use;
      break;
    case UseFlag::phase:
      flags.use_phase = use;
      break;
  }
  return {ID, flags};
}

template <class Reading>
UndoFlags flags_of(const Reading& reading) {
  return {reading.UseReading, reading.UseResistivity, reading.UsePhase};
}

/// The profile's column of the current station; null if it has none.
const ProfileColumn* current_column() {
  const std::int32_t number = session().current_profile_column;
  const std::vector<ProfileColumn>& columns = data_sets().profile.columns;
  return number < 1 || std::cmp_greater(number, columns.size())
             ? nullptr
             : &columns[static_cast<std::size_t>(number) - 1];
}

ReadingKey key_of(const ProfileColumn& column) {
  ReadingKey key = data_sets().profile.key;
  key.station = column.station;
  key.scan_rate = 0.0F;
  return key;
}

}  // namespace

Edit clear_frequencies(FrequencyCommand command, double frequency, OutlierField field) {
  const bool needs_frequency = command < FrequencyCommand::reset_all;
  if (needs_frequency && !(frequency > 0.0)) {
    return Edit::nothing;
  }
  const BusyPointer busy;
  const MaskRule rule = rule_of(command, frequency, field);
  std::vector<UndoEntry> entries;
  const std::vector<RepeatSlot>& slots = data_sets().repeats.slots;
  for (std::size_t slot = 1; slot < slots.size(); ++slot) {
    Curve curve = slots[slot].reading.curve;
    bool changed = apply_rule(rule, curve);
    if (command == FrequencyCommand::mask_negative_phases) {
      changed = mask_negative_phases(rule, curve) || changed;
    }
    if (changed) {
      entries.push_back(mask_entry(slots[slot].reading.ID, curve.mask));
    }
  }
  return edit_repeats("An error occurred while clearing the frequencies: ", entries);
}

Edit clip_outliers(ClipEnds ends, int count, OutlierField field) {
  if (count < 1) {
    return Edit::nothing;
  }
  if ((ends == ClipEnds::both ? 2.0 * count : count) >= data_sets().repeats.repeat_count) {
    user_interface().show_message(
        "There are not enough data values to allow this number of outliers to be clipped");
    return Edit::nothing;
  }
  const BusyPointer busy;
  return edit_repeats("An error occurred while clipping the outliers: ",
                      clipped_masks(ends, static_cast<std::size_t>(count), field));
}

Edit toggle_repeat_point(std::size_t slot, std::size_t point, Component component) {
  const RepeatDataSet& data = data_sets().repeats;
  if (slot >= data.slots.size()) {
    return Edit::nothing;
  }
  return toggle(data.slots[slot].reading, point, component, ReduceFrom::repeats, data.key);
}

Edit toggle_station_point(std::size_t slot, std::size_t point, Component component) {
  const StationDataSet& data = data_sets().station;
  if (slot >= data.slots.size()) {
    return Edit::nothing;
  }
  const StationSlot& clicked = data.slots[slot];
  ReadingKey key = data.key;
  key.scan_rate = clicked.SampleRate;
  switch (clicked.kind) {
    case StationSlotKind::merged:
      return toggle(clicked.reading, point, component, ReduceFrom::averages, key);
    case StationSlotKind::average:
    case StationSlotKind::file:
      return toggle(clicked.reading, point, component, ReduceFrom::repeats, key);
    case StationSlotKind::other_merged:
    case StationSlotKind::neighbour:
      break;
  }
  return Edit::nothing;
}

Edit toggle_merged_point(const StoredReading& merged, std::size_t point, Component component,
                         const ReadingKey& key) {
  return toggle(merged, point, component, ReduceFrom::averages, key);
}

Edit toggle_profile_point(std::size_t column, std::size_t frequency_index, Component component) {
  const ProfileDataSet& data = data_sets().profile;
  if (column >= data.columns.size() || frequency_index >= data.frequencies.size()) {
    return Edit::nothing;
  }
  const ReadingKey key = key_of(data.columns[column]);
  StoredReading merged;  // the column doesn't know where its values are in the row
  if (get_reduced_reading(Module_database::reduction_merged, AllowRaw::yes, key, session().frequencies,
                          merged) != 0) {
    return Edit::failed;
  }
  const auto found = std::ranges::find(merged.curve.frequencies, data.frequencies[frequency_index]);
  if (found == merged.curve.frequencies.end()) {
    return Edit::nothing;
  }
  const auto point = static_cast<std::size_t>(found - merged.curve.frequencies.begin());
  return toggle(merged, point, component, ReduceFrom::averages, key);
}

Edit set_repeat_use(std::size_t slot, UseFlag flag, bool use) {
  const RepeatDataSet& data = data_sets().repeats;
  if (slot >= data.slots.size()) {
    return Edit::nothing;
  }
  const StoredReading& reading = data.slots[slot].reading;
  const UndoEntry entry = use_entry(reading.ID, flags_of(reading), flag, use);
  return edit_readings(storing_failed, {&entry, 1}, ReduceFrom::repeats, data.key);
}

Edit set_merged_use(UseFlag flag, bool use) {
  const ProfileColumn* const column = current_column();
  if (column == nullptr) {
    return Edit::nothing;
  }
  const UndoEntry entry = use_entry(column->ID, flags_of(*column), flag, use);
  return edit_readings(storing_failed, {&entry, 1}, ReduceFrom::averages, key_of(*column));
}

Edit set_static_factor(float factor) {
  const ProfileColumn* const column = current_column();
  if (session().current_station_index < 1 || column == nullptr || !(factor > 0.0F) ||
      !std::isfinite(factor) || factor == column->ResOffset) {
    return Edit::nothing;
  }
  const UndoEntry entry{column->ID, UndoStatic{factor}};
  return edit_readings(storing_failed, {&entry, 1}, ReduceFrom::nothing, key_of(*column));
}

}  // namespace Module_averaged_data
