#include <span>
#include <utility>

#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"
#include "reduction/repeat_sums.h"

namespace Module_averaged_data {

using Module_database::Curve;
using Module_database::StationRows;

namespace {

constexpr float average_merge_frequency = -1.0F;

/// The average of all repeats of a key that are switched on; empty if there is none.
Curve average_of_repeats(const ReadingKey& key, std::int32_t StationID) {
  dao::Recordset repeats = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + key_criteria("FileID>0", StationID, "ReductionType=0", key) +
      " ORDER BY EventNumber");
  if (repeats.eof() || repeats.get_long("NumFrequencies") < 1) {
    return {};
  }
  RepeatSums sums(
      std::span(session().frequency_list).first(static_cast<std::size_t>(session().frequency_count)));
  for (; !repeats.eof(); repeats.move_next()) {
    if (repeats.get_bit("UseReading")) {
      sums.add(Module_database::read_reading(repeats));
    }
  }
  return sums.average();
}

/// Stores an average. What the user has set on an earlier one stays, as long as it has as many frequencies.
void store_average(const ReadingKey& key, const StationRows& place, StoredReading& average) {
  const std::string criteria = key_criteria("FileID<0", place.StationID, "ReductionType=1", key);
  Overrides overrides = Overrides::write;
  auto earlier = find_derived_row(criteria);
  const RowTarget target = earlier ? RowTarget::found_row : RowTarget::new_row;
  if (earlier && std::cmp_equal(earlier->NumFrequencies, average.curve.count()) &&
      earlier->edits.curve.mask.size() == average.curve.mask.size()) {
    earlier->edits.curve.frequencies = std::move(average.curve.frequencies);
    earlier->edits.curve.data = std::move(average.curve.data);
    average = std::move(earlier->edits);
    overrides = Overrides::keep;
  }
  store_derived_row(target, criteria, reduction_averaged, average_merge_frequency, key, place, overrides,
                    average);
}

}  // namespace

int average_repeats(const ReadingKey& key, StoredReading& average) {
  average = {};
  return trap_errors(averaging_failed, [&] {
    if (Module_database::load_reference_frequencies(key.reference_type) != 0) {
      return -1;
    }
    const StationRows place =
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
    StoredReading made;
    made.curve = average_of_repeats(key, place.StationID);
    if (made.curve.count() > 0) {
      store_average(key, place, made);
      average = std::move(made);
    }
    return 0;
  });
}

}  // namespace Module_averaged_data
