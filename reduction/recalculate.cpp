#include <optional>

#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

// A commit waits for the disk, many times longer than a group takes to compute; a commit for each few
// hundred of them makes the wait disappear and loses little when the power fails.
constexpr int groups_per_commit = 500;

enum class Outcome { finished, stopped, failed };

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

/// Keeps what a run wrote before one of its groups failed. The user has been told of that failure, which
/// mostly is the reason why this one comes as well.
void commit_after_failure(dao::Transaction& transaction) {
  try {
    transaction.commit();
  } catch (const dao::Error&) {  // NOLINT(bugprone-empty-catch)
  }
}

Outcome rebuild(const char* what, const std::vector<ReadingKey>& keys,
                int (*reduce)(const ReadingKey&, StoredReading&)) {
  std::optional<dao::Transaction> transaction;
  int open_groups = 0;
  int shown_percent = -1;
  for (std::size_t index = 0; index < keys.size(); ++index) {
    const int percent = static_cast<int>(100 * index / keys.size());
    if (percent != shown_percent) {
      user_interface().show_progress(what, shown_percent = percent);
    }
    user_interface().process_events();
    if (user_interface().stop_requested()) {
      if (transaction) {
        transaction->commit();
      }
      return Outcome::stopped;
    }
    if (!transaction) {
      transaction.emplace(Module_database::open_survey().database);
    }
    StoredReading ignored;
    if (reduce(keys[index], ignored) != 0) {
      commit_after_failure(*transaction);
      return Outcome::failed;
    }
    if (++open_groups == groups_per_commit) {
      transaction->commit();
      transaction.reset();
      open_groups = 0;
    }
  }
  if (transaction) {
    transaction->commit();
  }
  return Outcome::finished;
}

Outcome rebuild_all() {
  const Outcome averages = rebuild(
      "Averaging repeats",
      read_keys("SELECT DISTINCT LineNumber,Station,ReferenceType,SampleRate,DataType,DipoleLength FROM "
                "ReadingsDataTable WHERE ReductionType=0",
                ScanRate::part_of_key),
      average_repeats);
  if (averages != Outcome::finished) {
    return averages;
  }
  return rebuild("Merging scan rates",
                 read_keys("SELECT DISTINCT LineNumber,Station,ReferenceType,DataType,DipoleLength FROM "
                           "ReadingsDataTable WHERE ReductionType=1",
                           ScanRate::left_out),
                 merge_scan_rates);
}

}  // namespace

int recalculate_merged() {
  const BusyPointer busy;
  const ScopeGuard end_progress([] { user_interface().show_progress("", -1); });
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
