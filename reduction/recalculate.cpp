#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"
#include "reduction/stored_keys.h"

namespace Module_averaged_data {

namespace {

constexpr int groups_per_commit = 500;

Outcome rebuild_all() {
  const EachItemRules rules{.items_per_commit = groups_per_commit};
  const std::vector<ReadingKey> repeats = stored_keys(reduction_raw, ScanRate::part_of_key);
  WorkProgress progress("Averaging repeats", repeats.size());
  Module_database::FrequencyLists lists;
  StoredReading ignored;
  const Outcome averages = each_item(
      progress,
      [&](std::size_t index) {
        const Frequencies* const frequencies = lists.of(repeats[index].reference_type);
        return frequencies == nullptr ? -1 : average_repeats(repeats[index], *frequencies, ignored);
      },
      rules);
  if (averages != Outcome::finished) {
    return averages;
  }
  const std::vector<ReadingKey> scan_rates = stored_keys(reduction_averaged, ScanRate::left_out);
  progress.begin("Merging scan rates", scan_rates.size());
  return each_item(
      progress,
      [&](std::size_t index) {
        const Frequencies* const frequencies = lists.of(scan_rates[index].reference_type);
        return frequencies == nullptr ? -1 : merge_scan_rates(scan_rates[index], *frequencies, ignored);
      },
      rules);
}

}  // namespace

int recalculate_merged() {
  const BusyPointer busy;
  return trap_errors(averaging_failed, [] {
    Module_database::require_writable();
    const Outcome outcome = rebuild_all();
    Module_database::settle_survey();
    return outcome == Outcome::failed ? -1 : 0;
  });
}

}  // namespace Module_averaged_data
