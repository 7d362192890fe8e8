#include "reduction/reduced_reading.h"

#include <optional>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "reduction/derived_rows.h"

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
  return Module_database::read_reading(row);
}

}  // namespace

int reduced_reading_at(std::int32_t StationID, std::int32_t reduction, AllowRaw allow_raw,
                       const ReadingKey& key, StoredReading& reading) {
  if (auto stored = stored_reading("FileID<0", StationID, reduction, key)) {
    reading = std::move(*stored);
    return 0;
  }
  const auto reduce = reduction == reduction_averaged ? average_repeats : merge_scan_rates;
  if (reduce(key, reading) != 0) {
    return -1;
  }
  if (reading.ID == 0 && allow_raw == AllowRaw::yes) {
    reading = stored_reading("FileID>0", StationID, reduction, key).value_or(StoredReading{});
  }
  return 0;
}

int get_reduced_reading(std::int32_t reduction, AllowRaw allow_raw, const ReadingKey& key,
                        StoredReading& reading) {
  reading = {};
  const std::string_view fixed_text = reduction == reduction_averaged
                                          ? averaging_failed
                                          : "An error occurred while calculating the merged data: ";
  return trap_errors(fixed_text, [&] {
    const auto place =
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
    return reduced_reading_at(place.StationID, reduction, allow_raw, key, reading);
  });
}

}  // namespace Module_averaged_data
