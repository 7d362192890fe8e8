#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/common_axes.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"
#include "reduction/merge_curves.h"

namespace Module_averaged_data {

namespace {

constexpr float merged_merge_frequency = 0.0F;
constexpr float merged_scan_rate = 0.0F;

/// Scan rates of all averages of a key, Hz, ascending.
std::vector<float> scan_rates_of(const ReadingKey& key, std::int32_t StationID) {
  std::vector<float> scan_rates;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT SampleRate FROM ReadingsDataTable WHERE StationID = " + format_number(StationID, "0") +
      " AND ReductionType=1 AND ReferenceType = " + format_number(key.reference_type, "0") +
      " AND DataType = " + dao::text_literal(key.data_type) +
      " AND DipoleLength = " + criterion_text(key.dipole) + " ORDER BY SampleRate");
  for (; !rows.eof(); rows.move_next()) {
    scan_rates.push_back(rows.get_single("SampleRate"));
  }
  return scan_rates;
}

/// The averages of all scan rates that are switched on, merged, and their axes.
StoredReading merge_averages(const StationRows& place, ReadingKey key, const Frequencies& frequencies) {
  MergedCurve curve;
  std::vector<Module_database::ReadingAxes> axes;
  for (const float scan_rate : scan_rates_of(key, place.StationID)) {
    key.scan_rate = scan_rate;
    const StoredReading average = find_or_compute(place, reduction_averaged, AllowRaw::yes, key, frequencies);
    if (average.ID != 0 && average.UseReading && (average.UseResistivity || average.UsePhase)) {
      curve.add(average);
      axes.push_back(average.axes);
    }
  }
  StoredReading merged;
  merged.curve = curve.finish();
  merged.axes = common_axes(axes);
  return merged;
}

/// Stores a merged curve. Flags and offsets of an earlier one stay; its masks stay as long as it has as many
/// frequencies.
void store_merged(const ReadingKey& key, const StationRows& place, StoredReading& merged) {
  const std::string criteria = key_criteria("FileID<0", place.StationID, "ReductionType=2", key);
  auto earlier = find_derived_row(criteria);
  const bool same_count = earlier && earlier->curve.count() == merged.curve.count();
  if (same_count) {
    merged.curve.mask = kept_mask(earlier->curve, merged.curve);
  }
  if (earlier) {
    earlier->curve = std::move(merged.curve);
    earlier->axes = merged.axes;
    merged = std::move(*earlier);
  }
  store_derived_row(reduction_merged, merged_merge_frequency, key, place,
                    earlier ? Overrides::keep : Overrides::write, merged);
  if (!same_count) {
    Module_database::join_frequency_list(key.reference_type, merged.curve.frequencies);
  }
}

}  // namespace

StoredReading compute_merged(const StationRows& place, const ReadingKey& key,
                             const Frequencies& frequencies) {
  StoredReading merged = merge_averages(place, key, frequencies);
  if (merged.curve.count() == 0) {
    return {};
  }
  ReadingKey merged_key = key;
  merged_key.scan_rate = merged_scan_rate;
  store_merged(merged_key, place, merged);
  return merged;
}

int merge_scan_rates(const ReadingKey& key, const Frequencies& frequencies, StoredReading& merged) {
  merged = {};
  return trap_errors(averaging_failed, [&] {
    merged = compute_merged(
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station), key,
        frequencies);
  });
}

}  // namespace Module_averaged_data
