#include "import/reduce_touched.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "core/debug_log.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"
#include "reduction/skipped_groups.h"
#include "reduction/stored_keys.h"

namespace Module_data_file {

namespace {

using Module_averaged_data::each_item;
using Module_averaged_data::EachItemRules;
using Module_averaged_data::SkippedGroups;
using Module_averaged_data::WorkProgress;
using Module_database::open_survey;
using Module_database::ReadingKey;

constexpr int stations_per_commit = 100;

void average_station(const ReadingRecord& record, const ScannedStation& scanned,
                     Module_database::FrequencyLists& lists, SkippedGroups& skipped) {
  const Module_database::StationRows place = Module_database::find_station(
      Module_database::StationSearch::look_up, scanned.LineNumber, scanned.Station);
  if (place.StationID < 0) {
    return;
  }
  for (const std::string& data_type : record.scanned_types) {
    const ReadingKey key{scanned.LineNumber, scanned.Station, scanned.ReferenceType,
                         scanned.SampleRate, data_type,       scanned.DipoleLength};
    skipped.attempt(key,
                    [&] { Module_averaged_data::compute_average(place, key, lists.of(key.reference_type)); });
  }
}

bool has_repeats(const ReadingKey& key) {
  const Module_database::StationRows place =
      Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
  const std::string criteria =
      Module_averaged_data::key_criteria("FileID>0", place.StationID, "ReductionType=0", key);
  return !open_survey().database.open_recordset("SELECT ID FROM ReadingsDataTable WHERE " + criteria).eof();
}

// The keys that replaced readings had. Those without readings come first: their averages are deleted, after
// which the store looks through its rows anew.
std::vector<ReadingKey> keys_to_renew(const KeySet& keys_left) {
  std::vector<ReadingKey> keys(keys_left.begin(), keys_left.end());
  std::stable_partition(keys.begin(), keys.end(), [](const ReadingKey& key) { return !has_repeats(key); });
  return keys;
}

// An average of readings that have all gone goes with them.
void renew_average(const ReadingKey& key, Module_database::FrequencyLists& lists) {
  const Module_database::StationRows place =
      Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
  if (place.StationID < 0) {
    return;
  }
  if (has_repeats(key)) {
    Module_averaged_data::compute_average(place, key, lists.of(key.reference_type));
  } else {
    Module_database::delete_readings(
        Module_averaged_data::key_criteria("FileID<0", place.StationID, "ReductionType=1", key));
  }
}

// Removes the merged curves that replaced readings were part of and that have no average any more.
void drop_merged_without_averages(const KeySet& keys_left, const std::vector<ReadingKey>& averaged,
                                  SkippedGroups& skipped) {
  if (keys_left.empty()) {
    return;
  }
  const KeySet kept(averaged.begin(), averaged.end());
  KeySet dropped;
  dao::Transaction transaction(open_survey().database);
  for (ReadingKey key : keys_left) {
    key.scan_rate = 0.0F;
    if (kept.contains(key) || !dropped.insert(key).second) {
      continue;
    }
    skipped.attempt(key, [&] {
      const Module_database::StationRows place =
          Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
      if (place.StationID >= 0) {
        Module_database::delete_readings(
            Module_averaged_data::key_criteria("FileID<0", place.StationID, "ReductionType=2", key));
      }
    });
  }
  transaction.commit();
}

std::vector<ReadingKey> merge_keys(const ReadingRecord& record, SkippedGroups& skipped) {
  using Name = std::tuple<std::string, double, std::int32_t, float>;  // line, station, reference type, dipole
  std::set<Name> touched;
  for (const ScannedStation& scanned : record.scan_list) {
    touched.emplace(upper_case(scanned.LineNumber), scanned.Station, scanned.ReferenceType,
                    scanned.DipoleLength);
  }
  for (const ReadingKey& key : record.run.keys_left) {
    touched.emplace(upper_case(key.line), key.station, key.reference_type, key.dipole);
  }
  using Module_averaged_data::ScanRate;
  std::vector<ReadingKey> keys =
      Module_averaged_data::stored_keys(Module_database::reduction_averaged, ScanRate::left_out, skipped);
  drop_merged_without_averages(record.run.keys_left, keys, skipped);
  std::erase_if(keys, [&](const ReadingKey& key) {
    return !touched.contains({upper_case(key.line), key.station, key.reference_type, key.dipole});
  });
  return keys;
}

/// The rows of the station that was asked for last: keys of a station follow one another.
class LastStation {
 public:
  /// Throws dao::Error.
  const Module_database::StationRows& rows(const ReadingKey& key) {
    if (!is_known_ || key.station != station_ || key.line != line_) {
      rows_ = Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
      line_ = key.line;
      station_ = key.station;
      is_known_ = true;
    }
    return rows_;
  }

 private:
  bool is_known_ = false;
  std::string line_;
  double station_ = 0.0;
  Module_database::StationRows rows_;
};

void merge_station(LastStation& station, const ReadingKey& key, Module_database::FrequencyLists& lists,
                   SkippedGroups& skipped) {
  skipped.attempt(key, [&] {
    Module_averaged_data::compute_merged(station.rows(key), key, lists.of(key.reference_type));
  });
}

}  // namespace

void reduce_touched(const ReadingRecord& record, ImportReport& report) {
  const std::vector<ReadingKey> left = keys_to_renew(record.run.keys_left);
  if (record.scan_list.empty() && left.empty()) {
    return;
  }
  Module_debug::write_debug(1, "reduce_touched");
  const EachItemRules rules{.items_per_commit = stations_per_commit, .may_stop = false};
  bool finishing = report.stopped;
  const auto caption = [&](const char* what) { return finishing ? "Finishing: averages" : what; };
  WorkProgress progress(caption("Averaging repeats"), record.scan_list.size() + left.size());
  Module_database::FrequencyLists lists;
  SkippedGroups skipped;
  const auto each = [&](const std::function<void(std::size_t)>& work) {
    (void)each_item(
        progress,
        [&](std::size_t index) {
          if (!finishing && user_interface().stop_requested()) {
            finishing = true;
            progress.rename(caption(""));
          }
          work(index);
          return 0;
        },
        rules);
  };
  each([&](std::size_t index) {
    if (index < left.size()) {
      skipped.attempt(left[index], [&] { renew_average(left[index], lists); });
    } else {
      average_station(record, record.scan_list[index - left.size()], lists, skipped);
    }
  });
  const std::vector<ReadingKey> keys = merge_keys(record, skipped);
  progress.begin(caption("Merging scan rates"), keys.size());
  LastStation station;
  each([&](std::size_t index) { merge_station(station, keys[index], lists, skipped); });
  report.groups_skipped = skipped.count();
  skipped.tell(std::string(averaging_failed));
}

}  // namespace Module_data_file
