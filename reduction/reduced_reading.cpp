#include <optional>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"
#include "reduction/raw_scan_rates.h"

namespace Module_averaged_data {

namespace {

/// The first stored reading of a key; one without frequencies has ID 0, as nothing can be done with it.
std::optional<StoredReading> stored_reading(std::string_view file_test, std::int32_t StationID,
                                            std::int32_t reduction, const ReadingKey& key) {
  const std::string reduction_test = "ReductionType = " + format_number(reduction, "0");
  const dao::Recordset row = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + key_criteria(file_test, StationID, reduction_test, key));
  if (row.eof()) {
    return std::nullopt;
  }
  if (row.get_long("NumFrequencies") < 1) {
    return StoredReading{};
  }
  StoredReading reading = Module_database::read_reading(row);
  Module_database::read_facts(reading);
  return reading;
}

/// Averages the scan rates of a key that have no average yet: where nobody has looked at a station there are
/// raw readings only, and a merged curve is made of averages.
void average_raw_rates(const StationRows& place, ReadingKey key, const Frequencies& frequencies) {
  for (const float scan_rate : raw_scan_rates(key, place.StationID)) {
    key.scan_rate = scan_rate;
    (void)find_or_compute(place, reduction_averaged, AllowRaw::no, key, frequencies);
  }
}

std::string_view failure_text(std::int32_t reduction) {
  return reduction == reduction_averaged ? averaging_failed
                                         : "An error occurred while calculating the merged data: ";
}

}  // namespace

StoredReading find_or_compute(const StationRows& place, std::int32_t reduction, AllowRaw allow_raw,
                              const ReadingKey& asked, const Frequencies& frequencies) {
  ReadingKey key = asked;
  if (reduction == reduction_merged) {
    key.scan_rate = 0.0F;  // callers may hold the rate that is shown beside the merged curve
  }
  auto stored = stored_reading("FileID<0", place.StationID, reduction, key);
  if (stored && frequencies_are_positive(stored->curve)) {
    return std::move(*stored);
  }
  if (reduction == reduction_merged) {
    average_raw_rates(place, key, frequencies);
  }
  const auto compute = reduction == reduction_averaged ? compute_average : compute_merged;
  if (StoredReading computed = compute(place, key, frequencies); computed.ID != 0) {
    return computed;
  }
  if (!stored && allow_raw == AllowRaw::yes) {
    stored = stored_reading("FileID>0", place.StationID, reduction, key);
  }
  return std::move(stored).value_or(StoredReading{});
}

int reduced_reading_at(const StationRows& place, std::int32_t reduction, AllowRaw allow_raw,
                       const ReadingKey& key, const Frequencies& frequencies, StoredReading& reading) {
  reading = {};
  return trap_errors(failure_text(reduction),
                     [&] { reading = find_or_compute(place, reduction, allow_raw, key, frequencies); });
}

int get_reduced_reading(std::int32_t reduction, AllowRaw allow_raw, const ReadingKey& key,
                        const Frequencies& frequencies, StoredReading& reading) {
  reading = {};
  return trap_errors(failure_text(reduction), [&] {
    reading = find_or_compute(
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station),
        reduction, allow_raw, key, frequencies);
  });
}

}  // namespace Module_averaged_data
