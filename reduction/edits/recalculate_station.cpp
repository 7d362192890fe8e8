#include "reduction/edits/recalculate_station.h"

#include <algorithm>

#include "core/session_state.h"
#include "core/trap_errors.h"
#include "reduction/computed_rows.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/derived_rows.h"
#include "reduction/edits/derived_snapshot.h"

namespace Module_averaged_data {

namespace {

int show_average(const ReadingKey& key, const Frequencies& frequencies, const StoredReading& average) {
  if (RepeatDataSet& repeats = data_sets().repeats;
      !repeats.slots.empty() && same_station(repeats.key, key) && repeats.key.scan_rate == key.scan_rate) {
    store_repeat_slot(repeats, 0, average, frequencies);
  }
  StationDataSet& station = data_sets().station;
  if (!same_station(station.key, key)) {
    return 0;
  }
  const auto found = std::ranges::find_if(station.slots, [&](const StationSlot& slot) {
    return slot.kind == StationSlotKind::average && slot.SampleRate == key.scan_rate;
  });
  if (found != station.slots.end()) {
    store_station_slot(station, static_cast<std::size_t>(found - station.slots.begin()), average,
                       frequencies);
    return 0;
  }
  // Either neighbours have taken its place, or it is the first average of its scan rate.
  return station.neighbour_count > 0
             ? 0
             : load_station_data(station.key, station.neighbours, frequencies, station);
}

int show_merged(const ReadingKey& key, const Frequencies& frequencies, const StoredReading& merged) {
  if (StationDataSet& station = data_sets().station;
      !station.slots.empty() && same_station(station.key, key)) {
    store_station_slot(station, 0, merged, frequencies);
  }
  ProfileDataSet& profile = data_sets().profile;
  ReadingKey profile_key = profile.key;
  profile_key.station = key.station;
  if (!same_station(profile_key, key)) {
    return 0;
  }
  std::int32_t column = find_profile_column(profile, key.station);
  if (column >= 0) {
    store_profile_column(profile, static_cast<std::size_t>(column), merged);
    return 0;
  }
  if (load_profile_data(profile_key, frequencies, profile) != 0) {
    return -1;
  }
  column = find_profile_column(profile, session().current_station);
  session().current_profile_column = column + 1;
  return 0;
}

/// What has been switched on or off may be all that a curve of the station rests on.
int follow_support(const ReadingKey& key) {
  ReadingKey profile_key = data_sets().profile.key;
  profile_key.station = key.station;
  if (!same_station(profile_key, key)) {
    return 0;
  }
  return trap_errors("An error occurred while reading the station: ", [&] {
    const std::vector<UnsupportedCurve> now =
        unsupported_curves({key.line, key.reference_type, key.data_type, key.dipole}, key.station);
    std::vector<UnsupportedCurve>& all = data_sets().unsupported;
    std::erase_if(all, [&](const UnsupportedCurve& curve) { return curve.station == key.station; });
    all.insert(all.end(), now.begin(), now.end());
    std::ranges::stable_sort(all, {}, &UnsupportedCurve::station);
  });
}

int reduce_selection(ReduceFrom from) {
  ReducedStation reduced;
  const Frequencies& frequencies = session().frequencies;
  if (reduce_station(from, selected_key(), frequencies, reduced) != 0) {
    return -1;
  }
  return show_reduced_station(selected_key(), frequencies, reduced);
}

}  // namespace

int reduce_station(ReduceFrom from, const ReadingKey& key, const Frequencies& frequencies,
                   ReducedStation& reduced, const Module_Brenlox::UndoReduction* earlier) {
  reduced = {};
  if (from == ReduceFrom::nothing) {
    return 0;
  }
  return trap_errors(averaging_failed, [&] {
    const StationRows place =
        Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
    if (from == ReduceFrom::repeats) {
      reduced.average = compute_average(place, key, frequencies);
      if (earlier != nullptr) {
        restore_average(*earlier, place, key, reduced.average);
      }
    }
    reduced.merged = compute_merged(place, key, frequencies);
    if (earlier != nullptr) {
      restore_merged(*earlier, place, key, reduced.merged);
    }
  });
}

int show_reduced_station(const ReadingKey& key, const Frequencies& frequencies,
                         const ReducedStation& reduced) {
  if (follow_support(key) != 0) {
    return -1;
  }
  if (reduced.average.ID != 0 && show_average(key, frequencies, reduced.average) != 0) {
    return -1;
  }
  return reduced.merged.ID == 0 ? 0 : show_merged(key, frequencies, reduced.merged);
}

int recalculate_station() { return reduce_selection(ReduceFrom::repeats); }

int refresh_station_values() { return reduce_selection(ReduceFrom::averages); }

}  // namespace Module_averaged_data
