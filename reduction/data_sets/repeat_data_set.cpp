#include "reduction/data_sets/repeat_data_set.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "reduction/data_sets/station_data_set.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

/// The first scan rate of the station, where none has been chosen yet. @return false if there is none
bool choose_scan_rate(ReadingKey& key) {
  if (key.scan_rate != 0.0F) {
    return true;
  }
  if (station_data_set().scan_rates.empty()) {
    return false;
  }
  key.scan_rate = station_data_set().scan_rates.front();
  session().current_scan_rate = decimal_of_single(key.scan_rate);
  return true;
}

int load_slots(const ReadingKey& key) {
  RepeatDataSet& data = repeat_data_set();
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE FileID>0 AND " + place_criteria(key) + " AND " +
      kind_criteria(0, key) + " AND SampleRate = " + criterion_text(key.scan_rate) + " ORDER BY EventNumber");
  const bool has_repeats = !rows.eof();
  StoredReading average;
  if (get_reduced_reading(reduction_averaged, AllowRaw::yes, key, average) != 0) {
    return -1;
  }
  if (!has_repeats && average.ID == 0) {
    return 0;
  }
  store_repeat_slot(0, std::move(average));
  for (; !rows.eof(); rows.move_next()) {
    store_repeat_slot(data.slots.size(), Module_database::read_reading(rows));
    data.repeat_count = static_cast<std::int32_t>(data.slots.size()) - 1;
  }
  return 0;
}

}  // namespace

RepeatDataSet& repeat_data_set() {
  static RepeatDataSet data;
  return data;
}

void reset_repeat_data() {
  repeat_data_set() = {};
  session().repeat_count = 0;
}

int load_repeat_data(ReadingKey key) {
  reset_repeat_data();
  if (!choose_scan_rate(key)) {
    return 0;
  }
  repeat_data_set().key = key;
  const int status =
      trap_errors("An error occurred while retrieving the repeat data: ", [&] { return load_slots(key); });
  session().repeat_count = repeat_data_set().repeat_count;
  return status;
}

void store_repeat_slot(std::size_t slot, StoredReading reading) {
  RepeatDataSet& data = repeat_data_set();
  RepeatSlot stored{std::move(reading), {}};
  stored.list_position = list_positions(stored.reading.curve);
  if (slot >= data.slots.size()) {
    data.extents.include(stored.reading.curve);
    data.maximum_frequencies = std::max(data.maximum_frequencies, stored.reading.curve.count());
    data.slots.push_back(std::move(stored));
    return;
  }
  data.slots[slot] = std::move(stored);
  data.extents = {};
  data.maximum_frequencies = 0;
  for (const RepeatSlot& each : data.slots) {
    data.extents.include(each.reading.curve);
    data.maximum_frequencies = std::max(data.maximum_frequencies, each.reading.curve.count());
  }
}

}  // namespace Module_averaged_data
