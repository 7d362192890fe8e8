#include <utility>
#include <vector>

#include "core/trap_errors.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "reduction/common_axes.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"
#include "reduction/repeat_sums.h"

namespace Module_averaged_data {

namespace {

constexpr float average_merge_frequency = -1.0F;  // stored with every average; nothing reads it

/// The average of all repeats of a key that are switched on, and their axes; empty if none is.
StoredReading average_of_repeats(const ReadingKey& key, std::int32_t StationID,
                                 const Frequencies& frequencies) {
  const std::string criteria = key_criteria("FileID>0", StationID, "ReductionType=0", key);
  dao::Recordset repeats = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY EventNumber");
  if (repeats.eof() || repeats.get_long("NumFrequencies") < 1) {
    return {};
  }
  RepeatSums sums(frequencies.list);
  std::vector<Module_database::ReadingAxes> axes;
  for (; !repeats.eof(); repeats.move_next()) {
    if (repeats.get_bit("UseReading")) {
      StoredReading repeat = Module_database::read_reading(repeats);
      Module_database::read_facts(repeat);  // repeats are few: their keys find them sooner than the criteria
      axes.push_back(repeat.axes);
      sums.add(repeat);
    }
  }
  StoredReading average;
  average.curve = sums.average();
  average.axes = common_axes(axes);
  return average;
}

/// Stores an average. What the user has set on an earlier one stays, as long as it has as many frequencies.
void store_average(const ReadingKey& key, const StationRows& place, StoredReading& average) {
  const std::string criteria = key_criteria("FileID<0", place.StationID, "ReductionType=1", key);
  Overrides overrides = Overrides::write;
  auto earlier = find_derived_row(criteria);
  if (earlier && earlier->curve.count() == average.curve.count()) {
    average.curve.mask = kept_mask(earlier->curve, average.curve);
    earlier->curve = std::move(average.curve);
    earlier->axes = average.axes;
    average = std::move(*earlier);
    overrides = Overrides::keep;
  } else if (earlier) {
    average.ID = earlier->ID;
  }
  store_derived_row(reduction_averaged, average_merge_frequency, key, place, overrides, average);
}

}  // namespace

StoredReading compute_average(const StationRows& place, const ReadingKey& key,
                              const Frequencies& frequencies) {
  StoredReading average = average_of_repeats(key, place.StationID, frequencies);
  if (average.curve.count() == 0) {
    return {};
  }
  store_average(key, place, average);
  return average;
}

int average_repeats(const ReadingKey& key, const Frequencies& frequencies, StoredReading& average) {
  average = {};
  return trap_errors(averaging_failed, [&] {
    average = compute_average(
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station), key,
        frequencies);
  });
}

}  // namespace Module_averaged_data
