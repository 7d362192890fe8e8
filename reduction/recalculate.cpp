#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"

namespace Module_averaged_data {

namespace {

constexpr int groups_per_commit = 500;

enum class ScanRate { part_of_key, left_out };

std::vector<ReadingKey> read_keys(const char* statement, ScanRate scan_rate) {
  std::vector<ReadingKey> keys;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(statement);
  for (; !rows.eof(); rows.move_next()) {
    ReadingKey& key = keys.emplace_back();
    key.line = rows.get_text("LineNumber");
    key.station = rows.get_double("Station");
    key.reference_type = rows.get_long("ReferenceType");
    if (scan_rate == ScanRate::part_of_key) {
      key.scan_rate = rows.get_single("SampleRate");
    }
    key.data_type = rows.get_text("DataType");
    key.dipole = rows.get_single("DipoleLength");
  }
  return keys;
}

Outcome rebuild_all() {
  const EachItemRules rules{.items_per_commit = groups_per_commit};
  const std::vector<ReadingKey> repeats = read_keys(
      "SELECT DISTINCT LineNumber,Station,ReferenceType,SampleRate,DataType,DipoleLength FROM "
      "ReadingsDataTable WHERE ReductionType=0",
      ScanRate::part_of_key);
  WorkProgress progress("Averaging repeats", repeats.size());
  StoredReading ignored;
  const Outcome averages = each_item(
      progress, [&](std::size_t index) { return average_repeats(repeats[index], ignored); }, rules);
  if (averages != Outcome::finished) {
    return averages;
  }
  const std::vector<ReadingKey> scan_rates = read_keys(
      "SELECT DISTINCT LineNumber,Station,ReferenceType,DataType,DipoleLength FROM "
      "ReadingsDataTable WHERE ReductionType=1",
      ScanRate::left_out);
  progress.begin("Merging scan rates", scan_rates.size());
  return each_item(
      progress, [&](std::size_t index) { return merge_scan_rates(scan_rates[index], ignored); }, rules);
}

}  // namespace

int recalculate_merged() {
  const BusyPointer busy;
  return trap_errors(averaging_failed, [] {
    const Outcome outcome = rebuild_all();
    // Averaging has loaded the frequency lists of all reference types in turn; the selection needs its own.
    if (const std::int32_t selected = session().current_reference_type; selected >= 0) {
      if (Module_database::load_reference_frequencies(selected) != 0) {
        return -1;
      }
    }
    return outcome == Outcome::failed ? -1 : 0;
  });
}

}  // namespace Module_averaged_data
