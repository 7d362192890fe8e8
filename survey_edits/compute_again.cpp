#include "survey_edits/compute_again.h"

#include <set>
#include <tuple>

#include "database/frequency_store.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "platform/dao/case_folding.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"

namespace Module_survey_edits {

namespace {

using Module_averaged_data::Outcome;
using Module_database::ReadingKey;
using Module_database::StationRows;

/// Computes one curve; without a result, what is stored of it is computed from readings that are gone.
void compute_or_drop(const ReadingKey& key, std::string_view reduction_test,
                     Module_database::FrequencyLists& lists,
                     Module_averaged_data::StoredReading (*compute)(const StationRows&, const ReadingKey&,
                                                                    const Frequencies&)) {
  const StationRows place =
      Module_database::find_station(Module_database::StationSearch::look_up, key.line, key.station);
  if (place.StationID == Module_database::no_row) {
    return;
  }
  if (compute(place, key, lists.of(key.reference_type)).ID == 0) {
    Module_database::delete_readings(
        Module_averaged_data::key_criteria("FileID<0", place.StationID, reduction_test, key));
  }
}

}  // namespace

TouchedCurves touched_curves(std::vector<ReadingKey> averages) {
  TouchedCurves curves{std::move(averages), {}};
  std::set<std::tuple<std::string, double, std::int32_t, std::string, float>> seen;
  for (ReadingKey key : curves.averages) {
    key.scan_rate = 0.0F;
    if (seen.emplace(dao::folded_text(key.line), key.station, key.reference_type, key.data_type, key.dipole)
            .second) {
      curves.merged.push_back(std::move(key));
    }
  }
  return curves;
}

Outcome compute_again(const TouchedCurves& curves, Module_averaged_data::WorkProgress& progress,
                      Module_averaged_data::SkippedGroups& skipped) {
  Module_database::FrequencyLists lists;
  const auto each = [&](const std::vector<ReadingKey>& keys, std::string_view reduction_test, auto compute) {
    return Module_averaged_data::each_item(progress, [&](std::size_t index) {
      skipped.attempt(keys[index], [&] { compute_or_drop(keys[index], reduction_test, lists, compute); });
      return 0;
    });
  };
  progress.begin("Averaging repeats", curves.averages.size());
  const Outcome averaged = each(curves.averages, "ReductionType=1", Module_averaged_data::compute_average);
  if (averaged != Outcome::finished) {
    return averaged;
  }
  progress.begin("Merging scan rates", curves.merged.size());
  return each(curves.merged, "ReductionType=2", Module_averaged_data::compute_merged);
}

}  // namespace Module_survey_edits
