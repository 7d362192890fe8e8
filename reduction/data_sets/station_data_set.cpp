#include "reduction/data_sets/station_data_set.h"

#include <algorithm>
#include <utility>

#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

using Module_database::ReadingFacts;

dao::Recordset rows_where(const std::string& condition, const std::string& order) {
  return Module_database::open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE " +
                                                                condition + " ORDER BY " + order);
}

StationSlot slot_of(StationSlotKind kind, const dao::Recordset& row, const ReadingFacts& facts) {
  StationSlot slot;
  slot.kind = kind;
  slot.SampleRate = row.get_single("SampleRate");
  slot.station = row.get_double("Station");
  slot.station_index = session().current_station_index;
  slot.reading = Module_database::read_reading(row);
  facts.add_to(slot.reading);
  return slot;
}

void add_slot(StationDataSet& data, StationSlot slot, const Frequencies& frequencies) {
  slot.list_position = list_positions(slot.reading.curve, frequencies);
  data.extents.include(slot.reading.curve);
  data.slots.push_back(std::move(slot));
}

/// The averages of the station by scan rate; sets the scan rates.
std::vector<StationSlot> read_averages(const ReadingKey& key, StationDataSet& data) {
  std::vector<StationSlot> averages;
  const std::string criteria = place_criteria(key) + " AND " + kind_criteria(reduction_averaged, key);
  const ReadingFacts facts(criteria);
  dao::Recordset rows = rows_where(criteria, "SampleRate");
  for (; !rows.eof(); rows.move_next()) {
    const bool derived = rows.get_long("FileID") < 0;
    StationSlot& slot = averages.emplace_back(
        slot_of(derived ? StationSlotKind::average : StationSlotKind::file, rows, facts));
    if (data.scan_rates.empty() || data.scan_rates.back() != slot.SampleRate) {
      data.scan_rates.push_back(slot.SampleRate);
    }
  }
  return averages;
}

void add_kind(StationDataSet& data, std::vector<StationSlot>& averages, StationSlotKind kind,
              const Frequencies& frequencies) {
  for (StationSlot& slot : averages) {
    if (slot.kind == kind) {
      add_slot(data, std::move(slot), frequencies);
    }
  }
}

void add_other_merged(const ReadingKey& key, const Frequencies& frequencies, StationDataSet& data) {
  const std::int32_t merged_ID = data.slots.front().reading.ID;
  const std::string criteria =
      place_criteria(key) + " AND " + kind_criteria(reduction_merged, key) + " AND SampleRate=0";
  const ReadingFacts facts(criteria);
  dao::Recordset rows = rows_where(criteria, "FileID");
  for (; !rows.eof(); rows.move_next()) {
    if (rows.get_long("ID") != merged_ID) {
      add_slot(data, slot_of(StationSlotKind::other_merged, rows, facts), frequencies);
    }
  }
}

void add_neighbours(const ReadingKey& key, const std::vector<std::int32_t>& neighbours,
                    const Frequencies& frequencies, StationDataSet& data) {
  const std::string criteria = "LineNumber = " + dao::text_literal(key.line) + " AND " +
                               kind_criteria(reduction_merged, key) + " AND SampleRate=0";
  const ReadingFacts facts(criteria);
  dao::Recordset rows = rows_where(criteria, "Station,FileID");
  // Both run along the line, so one walk meets each neighbour at its first row.
  auto next = neighbours.begin();
  for (; !rows.eof() && next != neighbours.end(); rows.move_next()) {
    const double station = rows.get_double("Station");
    const auto value = [&] { return session().station_value[static_cast<std::size_t>(*next) - 1]; };
    while (next != neighbours.end() && value() < station) {
      ++next;
    }
    if (next == neighbours.end() || value() != station) {
      continue;
    }
    StationSlot slot = slot_of(StationSlotKind::neighbour, rows, facts);
    slot.station_index = *next;
    add_slot(data, std::move(slot), frequencies);
    ++data.neighbour_count;
    ++next;
  }
}

int load_slots(const ReadingKey& key, const std::vector<std::int32_t>& neighbours,
               const Frequencies& frequencies, StationDataSet& data) {
  std::vector<StationSlot> averages = read_averages(key, data);
  StationSlot merged;
  merged.station = key.station;
  merged.station_index = session().current_station_index;
  if (get_reduced_reading(reduction_merged, AllowRaw::yes, key, frequencies, merged.reading) != 0) {
    return -1;
  }
  add_slot(data, std::move(merged), frequencies);
  if (neighbours.empty()) {
    add_kind(data, averages, StationSlotKind::average, frequencies);
    add_kind(data, averages, StationSlotKind::file, frequencies);
  }
  add_other_merged(key, frequencies, data);
  if (!neighbours.empty()) {
    add_neighbours(key, neighbours, frequencies, data);
  }
  if (data.slots.size() == 1 && data.slots.front().reading.ID == 0) {
    data.slots.clear();
  }
  return 0;
}

}  // namespace

std::vector<std::int32_t> neighbours_of(std::int32_t station_index, const NeighbourOptions& options) {
  const SessionState& state = session();
  if (!options.show || station_index < 1 || station_index > state.station_count) {
    return {};
  }
  const auto line =
      static_cast<std::size_t>(state.line_of_station[static_cast<std::size_t>(station_index) - 1]);
  const std::int32_t first_of_line = state.first_station_of_line[line - 1];
  const std::int32_t last_of_line = state.first_station_of_line[line] - 1;
  const std::int32_t count = std::min(options.count, state.station_count);
  std::int32_t first = options.side == NeighbourSide::after ? station_index : station_index - count;
  std::int32_t last = options.side == NeighbourSide::before ? station_index : station_index + count;
  if (options.all) {
    first = first_of_line;
    last = last_of_line;
  }
  if (first < first_of_line) {
    last += first_of_line - first;
    first = first_of_line;
  }
  if (last > last_of_line) {
    first = std::max(first - (last - last_of_line), first_of_line);
    last = last_of_line;
  }
  std::vector<std::int32_t> neighbours;
  for (std::int32_t index = first; index <= last; ++index) {
    if (index != station_index) {
      neighbours.push_back(index);
    }
  }
  return neighbours;
}

int load_station_data(const ReadingKey& key, const NeighbourOptions& options, const Frequencies& frequencies,
                      StationDataSet& data) {
  StationDataSet fresh;  // the arguments may be those of the data set
  fresh.key = key;
  fresh.neighbours = options;
  data = std::move(fresh);
  return trap_errors("An error occurred while generating the station data: ", [&] {
    return load_slots(key, neighbours_of(session().current_station_index, options), frequencies, data);
  });
}

void store_station_slot(StationDataSet& data, std::size_t slot, StoredReading reading,
                        const Frequencies& frequencies) {
  data.slots[slot].list_position = list_positions(reading.curve, frequencies);
  data.slots[slot].reading = std::move(reading);
  data.extents = {};
  for (const StationSlot& each : data.slots) {
    data.extents.include(each.reading.curve);
  }
}

}  // namespace Module_averaged_data
