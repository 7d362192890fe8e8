#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"
#include "reduction/skipped_groups.h"
#include "reduction/stored_keys.h"

namespace Module_averaged_data {

namespace {

constexpr int stations_per_commit = 100;

/// What is to be computed at one station: the averages, then the merged curves that come from them.
struct StationWork {
  std::vector<ReadingKey> averages;
  std::vector<ReadingKey> merged;
};

/// The whole survey, station by station, so that a stop leaves no station between its earlier and its new
/// curves.
std::vector<StationWork> work_of_survey(SkippedGroups& skipped) {
  std::map<std::pair<std::string, double>, StationWork> stations;
  std::map<std::tuple<std::string, double, std::int32_t, std::string, float>, ReadingKey> merged;
  const auto note_merged = [&](ReadingKey key) {
    key.scan_rate = 0.0F;
    merged.try_emplace({upper_case(key.line), key.station, key.reference_type, key.data_type, key.dipole},
                       key);
  };
  for (ReadingKey& key : stored_keys(reduction_raw, ScanRate::part_of_key, skipped)) {
    note_merged(key);
    stations[{upper_case(key.line), key.station}].averages.push_back(std::move(key));
  }
  for (const ReadingKey& key : stored_keys(reduction_averaged, ScanRate::left_out, skipped)) {
    note_merged(key);
  }
  for (auto& [name, key] : merged) {
    stations[{upper_case(key.line), key.station}].merged.push_back(std::move(key));
  }
  std::vector<StationWork> work;
  work.reserve(stations.size());
  for (auto& [name, station] : stations) {
    work.push_back(std::move(station));
  }
  return work;
}

StationRows place_of(const ReadingKey& key) {
  return Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
}

void rebuild_station(const StationWork& station, Module_database::FrequencyLists& lists,
                     SkippedGroups& skipped) {
  for (const ReadingKey& key : station.averages) {
    skipped.attempt(key, [&] { compute_average(place_of(key), key, lists.of(key.reference_type)); });
  }
  for (const ReadingKey& key : station.merged) {
    skipped.attempt(key, [&] { compute_merged(place_of(key), key, lists.of(key.reference_type)); });
  }
}

void tell_what_is_left(std::size_t stations) {
  user_interface().show_message(
      "The recalculation was stopped. " + plain_text(static_cast<std::int64_t>(stations)) +
      (stations == 1 ? " station keeps its earlier curves." : " stations keep their earlier curves."));
}

int rebuild_all() {
  SkippedGroups skipped;
  const std::vector<StationWork> stations = work_of_survey(skipped);
  Module_database::FrequencyLists lists;
  std::size_t done = 0;
  Outcome outcome = Outcome::finished;
  {
    WorkProgress progress("Averaging repeats and merging scan rates", stations.size());
    outcome = each_item(progress,
                        [&](std::size_t index) {
                          rebuild_station(stations[index], lists, skipped);
                          ++done;
                          return 0;
                        },
                        {.items_per_commit = stations_per_commit});
  }
  if (outcome == Outcome::stopped) {
    tell_what_is_left(stations.size() - done);
  }
  skipped.tell(std::string(averaging_failed));
  if (outcome == Outcome::finished && skipped.count() == 0) {
    Module_Brenlox::tell_finished(
        "All averages and merged curves are computed again and stored in " + session().database_file,
        session().database_file);
  }
  return skipped.count() > 0 ? -1 : 0;
}

}  // namespace

int recalculate_merged() {
  const BusyPointer busy;
  return trap_errors(averaging_failed, [] {
    Module_database::require_writable();
    const int status = rebuild_all();
    Module_database::settle_survey();
    return status;
  });
}

}  // namespace Module_averaged_data
