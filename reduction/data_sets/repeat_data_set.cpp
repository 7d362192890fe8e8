#include "reduction/data_sets/repeat_data_set.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

int load_slots(const ReadingKey& key, const Frequencies& frequencies, RepeatDataSet& data) {
  const std::string criteria = "FileID>0 AND " + place_criteria(key) + " AND " +
                               kind_criteria(reduction_raw, key) +
                               " AND SampleRate = " + criterion_text(key.scan_rate);
  const Module_database::ReadingFacts facts(criteria);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY EventNumber");
  const bool has_repeats = !rows.eof();
  StoredReading average;
  if (get_reduced_reading(reduction_averaged, AllowRaw::yes, key, frequencies, average) != 0) {
    return -1;
  }
  if (!has_repeats && average.ID == 0) {
    return 0;
  }
  store_repeat_slot(data, 0, std::move(average), frequencies);
  for (; !rows.eof(); rows.move_next()) {
    StoredReading repeat = Module_database::read_reading(rows);
    facts.add_to(repeat);
    store_repeat_slot(data, data.slots.size(), std::move(repeat), frequencies);
    data.repeat_count = static_cast<std::int32_t>(data.slots.size()) - 1;
  }
  return 0;
}

}  // namespace

int load_repeat_data(const ReadingKey& key, const Frequencies& frequencies, RepeatDataSet& data) {
  data = {};
  data.key = key;
  return trap_errors("An error occurred while retrieving the repeat data: ",
                     [&] { return load_slots(key, frequencies, data); });
}

void store_repeat_slot(RepeatDataSet& data, std::size_t slot, StoredReading reading,
                       const Frequencies& frequencies) {
  RepeatSlot stored{std::move(reading), {}};
  stored.list_position = list_positions(stored.reading.curve, frequencies);
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
