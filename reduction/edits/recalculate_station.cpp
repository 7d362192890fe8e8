#include "reduction/edits/recalculate_station.h"

#include <algorithm>

#include "core/session_state.h"
#include "reduction/data_sets/profile_data_set.h"
#include "reduction/data_sets/repeat_data_set.h"
#include "reduction/data_sets/station_data_set.h"

namespace Module_averaged_data {

namespace {

int show_average(const ReadingKey& key, const StoredReading& average) {
  if (const RepeatDataSet& repeats = repeat_data_set();
      !repeats.slots.empty() && same_station(repeats.key, key) && repeats.key.scan_rate == key.scan_rate) {
    store_repeat_slot(0, average);
  }
  StationDataSet& station = station_data_set();
  if (!same_station(station.key, key)) {
    return 0;
  }
  const auto found = std::ranges::find_if(station.slots, [&](const StationSlot& slot) {
    return slot.kind == StationSlotKind::average && slot.SampleRate == key.scan_rate;
  });
  if (found != station.slots.end()) {
    store_station_slot(static_cast<std::size_t>(found - station.slots.begin()), average);
    return 0;
  }
  // Either neighbours have taken its place, or it is the first average of its scan rate.
  return station.neighbour_count > 0 ? 0 : load_station_data(station.key, station.neighbours);
}

int show_merged(const ReadingKey& key, const StoredReading& merged) {
  if (const StationDataSet& station = station_data_set();
      !station.slots.empty() && same_station(station.key, key)) {
    store_station_slot(0, merged);
  }
  const ProfileDataSet& profile = profile_data_set();
  ReadingKey profile_key = profile.key;
  profile_key.station = key.station;
  if (!same_station(profile_key, key)) {
    return 0;
  }
  std::int32_t column = find_profile_column(key.station);
  if (column >= 0) {
    store_profile_column(static_cast<std::size_t>(column), merged);
    return 0;
  }
  if (load_profile_data(profile_key) != 0) {
    return -1;
  }
  column = find_profile_column(session().current_station);
  session().current_profile_column = column + 1;
  return 0;
}

int reduce_selection(ReduceFrom from) {
  ReducedStation reduced;
  if (reduce_station(from, selected_key(), reduced) != 0) {
    return -1;
  }
  return show_reduced_station(selected_key(), reduced);
}

}  // namespace

int reduce_station(ReduceFrom from, const ReadingKey& key, ReducedStation& reduced) {
  reduced = {};
  if (from == ReduceFrom::repeats && average_repeats(key, reduced.average) != 0) {
    return -1;
  }
  return from == ReduceFrom::nothing ? 0 : merge_scan_rates(key, reduced.merged);
}

int show_reduced_station(const ReadingKey& key, const ReducedStation& reduced) {
  if (reduced.average.ID != 0 && show_average(key, reduced.average) != 0) {
    return -1;
  }
  return reduced.merged.ID == 0 ? 0 : show_merged(key, reduced.merged);
}

int recalculate_station() { return reduce_selection(ReduceFrom::repeats); }

int refresh_station_values() { return reduce_selection(ReduceFrom::averages); }

}  // namespace Module_averaged_data
