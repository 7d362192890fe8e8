#include "import/import_run.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <optional>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

#include "core/debug_log.h"
#include "core/file_names.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/frequency_store.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "import/file_decode.h"
#include "import/natural_order.h"
#include "import/proposals/plan_maker.h"
#include "import/quiet_interface.h"
#include "import/readers/converted_place.h"
#include "import/readers/reader_steps.h"
#include "import/readers/reader_table.h"
#include "import/store_blocks.h"
#include "import/survey_file_names.h"
#include "projections/survey_projection.h"
#include "reduction/computed_rows.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"
#include "reduction/skipped_groups.h"
#include "reduction/stored_keys.h"

namespace Module_data_file {

using formats::FileReport;

namespace {

using Module_averaged_data::each_item;
using Module_averaged_data::EachItemRules;
using Module_averaged_data::Outcome;
using Module_averaged_data::SkippedGroups;
using Module_averaged_data::WorkProgress;
using Module_database::open_survey;
using Module_database::ReadingKey;

constexpr std::string_view import_failed = "An error occurred while importing the data file: ";
constexpr std::string_view averaging_failed = "An error occurred while averaging the data: ";
constexpr const char* nothing_found = "neither an impedance section (>=MTSECT) nor any other data was found";
constexpr int stations_per_commit = 100;

// When this many files in a row can't be stored for the same reason, the fault is not the files'.
constexpr int repeated_failures = 3;

int fault(const char* text) {
  user_interface().show_message(text);
  return -1;
}

// The survey's projection; one without takes that of the choices, when all of them are tested.
int test_projection(const ImportChoices& choices) {
  if (Module_projections::read_survey_projection() != 0) {
    return choices.projection ? 0 : fault("The projection has not been defined");
  }
  return Module_projections::decode_coordinate_system(Module_projections::current_coord_system());
}

// A survey with a projection keeps it.
int define_projection(const ImportChoices& choices) {
  Module_projections::CoordSystem& current = Module_projections::current_coord_system();
  if (!choices.convert_coordinates || !choices.projection || !current.name.empty()) {
    return 0;
  }
  current = *choices.projection;
  if (Module_projections::store_survey_projection() == 0) {
    return Module_projections::decode_coordinate_system(current);
  }
  current = {};
  return -1;
}

int test_choices(ImportMode mode, ReadingRecord& record) {
  const ImportChoices& choices = record.choices;
  if (mode == ImportMode::import) {
    if (!open_survey().database.is_open()) {
      return fault("No survey is open");
    }
    if (trap_errors({}, Module_database::require_writable) != 0) {
      return -1;
    }
    if (choices.convert_coordinates) {
      if (const int result = test_projection(choices); result != 0) {
        return result;
      }
    }
  }
  if (!trimmed(choices.start_station).empty()) {
    if (!is_numeric(choices.start_station) || !std::isfinite(numeric_value(choices.start_station))) {
      return fault("The start station number is invalid");
    }
    record.run.next_station = numeric_value(choices.start_station);
  }
  if (!is_numeric(choices.station_step) || numeric_value(choices.station_step) == 0.0 ||
      !std::isfinite(static_cast<float>(numeric_value(choices.station_step)))) {
    return fault("The station spacing is invalid");
  }
  return decode_file_format(ShowFault::yes, record);
}

void fail_file(FileReport& report, const std::string& reason) {
  report.failure = reason;
  user_interface().show_message(std::string(import_failed) + report.file + ": " + reason);
}

// Makes the open recordsets forget the rows that a roll-back removed.
void requery_stores() {
  open_survey().files.requery();
  open_survey().readings.requery();
  open_survey().stations.requery();
  open_survey().locations.requery();
  open_survey().sites.requery();
  open_survey().reading_facts.requery();
}

// Whether a file with a failure brings less than its earlier import did.
bool gave_less(const FileTask& task) {
  const StoreNotes& notes = task.notes;
  return !task.report.failure.empty() && notes.file_known &&
         (task.report.readings < notes.replaced_readings ||
          values_of_file(task.record.FileID) < notes.replaced_values);
}

// Ends the file's transaction. The readings of an earlier import of the file are replaced only when all new
// ones have been stored.
void end_transaction(dao::Transaction& transaction, FileTask& task) {
  const StoreNotes& notes = task.notes;
  FileReport& report = task.report;
  const bool failed = report.readings == 0 || !notes.failure.empty() || gave_less(task);
  const bool keep_earlier =
      failed &&
      (notes.file_known || (report.readings == 0 && rows_of_earlier_import(task.record) != nullptr));
  if (!keep_earlier) {
    transaction.commit();
    own_rows_of_file(task.record);
    task.record.run.keys_left.merge(task.notes.replaced_keys);
    report.failure +=
        report.failure.empty() || report.readings == 0 ? "" : "; what stands before that is stored";
    return;
  }
  transaction.roll_back();
  requery_stores();
  report.readings = 0;
  if (report.failure.empty()) {
    report.failure = "the file gave no reading";
  }
  report.failure += "; the readings of its earlier import stay";
}

// Reads one file as one transaction. False if the survey takes no more files.
bool import_in_transaction(FieldReader read, FileTask& task) {
  const int result = trap_errors(import_failed, [&] {
    try {
      dao::Transaction transaction(open_survey().database);
      (void)read(task);  // its failure is in the report, and the user has seen the message
      end_transaction(transaction, task);
    } catch (const std::exception& failure) {
      task.report.readings = 0;
      task.report.failure = std::string(import_failed) + failure_text(failure);
      throw;
    }
  });
  if (result != 0) {
    (void)trap_errors(import_failed, requery_stores);
  }
  return result == 0;
}

void scan_file(FieldReader read, FileTask& task) {
  (void)read(task);
  const FileRows* const earlier = task.report.readings > 0 ? rows_of_earlier_import(task.record) : nullptr;
  if (earlier != nullptr) {  // as an import would
    task.record.file_rows = *earlier;
    own_rows_of_file(task.record);
  }
}

// Sections that name sites take their own rows one by one.
void take_planned_file(ReadingRecord& record) {
  const PlannedSection* const planned = planned_section(record);
  if (planned == nullptr) {
    return;
  }
  if (planned->can_edit(PlanCell::line)) {  // the header of a file that names its lines has another one
    record.LineNumber = planned->line;
  }
  record.EventNumber = planned->event;
  record.SampleRate = planned->rate;
  if (planned->is_edited(PlanCell::station)) {
    record.Station = planned->station;
  }
}

// The rows of an import whose stations depend on all of its files.
ImportPlan own_plan(const ImportChoices& choices, const std::vector<std::string>& files) {
  std::vector<ScannedFile> scanned;
  std::ranges::transform(files, std::back_inserter(scanned), scan_field_file);
  return PlanMaker().plan(scanned, choices);
}

// True if the run may go on with the next file.
bool import_file(const SurveyFileName& name, FileTask& task) {
  ReadingRecord& record = task.record;
  FileReport& report = task.report;
  Module_debug::write_debug(1, "import_file " + report.file);
  if (name.repeated) {
    report.failure = "the file is in the list twice; it is read once";
    return true;
  }
  std::error_code ignored;
  if (!std::filesystem::exists(report.file, ignored)) {
    report.failure = "the file doesn't exist";
    return true;
  }
  try {
    SampleFields sample;
    display_file_format(report.file, record, sample, report);
    take_planned_file(record);
    record.SurveyFile = name.name;
    record.path_tails = path_tails(report.file);
    if (task.is_import() && record.choices.convert_coordinates && names_sites(record.file_format)) {
      record.converted_place = converted_place(report.file, record, report);
    }
  } catch (const std::exception& failure) {
    report.failure = failure_text(failure);
    user_interface().show_message(std::string(import_failed) + failure_text(failure));
    return true;
  }
  const FieldReader read = reader_of(record.file_format);
  if (read == nullptr) {
    if (report.failure.empty()) {  // stray texts among the field files are named in the report alone
      fail_file(report, nothing_found);
    }
    return true;
  }
  const double next_station = record.run.next_station;
  bool go_on = true;
  if (task.is_import()) {
    go_on = import_in_transaction(read, task);
  } else {
    scan_file(read, task);
  }
  if (report.readings == 0) {
    record.run.next_station = next_station;  // also where sections were stored and taken back
    if (report.failure.empty()) {
      report.failure = "the file gave no reading";
    }
  }
  if (report.readings > 0) {
    report.replaced_readings = task.notes.replaced_readings;
    report.replaced_name = task.notes.earlier_name;
  }
  remark_on_converted_place(record, report);
  return go_on;
}

Outcome import_files(ImportMode mode, const std::vector<std::string>& files, ReadingRecord& record,
                     ImportReport& report, const FileBegins& file_begins) {
  const std::vector<SurveyFileName> names = survey_file_names(files);
  WorkProgress progress(mode == ImportMode::import ? "Importing data files" : "Scanning data files",
                        files.size());
  std::string last_failure;
  int same_failures = 0;
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    if (file_begins) {
      file_begins(files[index]);
    }
    start_file(record, index);
    FileReport& file_report = report.files.emplace_back();
    file_report.file = files[index];
    StoreNotes notes;
    FileTask task{mode, files[index], record, file_report, notes, [&](std::int64_t read, std::int64_t size) {
                    progress.show(index,
                                  size > 0 ? static_cast<double>(read) / static_cast<double>(size) : 0.0);
                  }};
    const bool go_on = import_file(names[index], task);
    same_failures = notes.failure.empty() ? 0 : (notes.failure == last_failure ? same_failures + 1 : 1);
    last_failure = notes.failure;
    return go_on && same_failures < repeated_failures ? 0 : -1;
  });
  if (outcome == Outcome::finished) {
    progress.show(files.size());
  }
  report.stopped = outcome == Outcome::stopped;
  return outcome;
}

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

/// Brings averages and merged curves of what was stored or replaced up to date. A stop doesn't end it:
/// readings without their curves would be seen nowhere.
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

// What the files say of their stations and sites, found by a scan without messages. It gives nameless
// sections no station: these depend on what it finds.
class LookIntoFiles {
 public:
  LookIntoFiles(const ReadingRecord& record, const std::vector<std::string>& files) : files_(files) {
    record_.choices = record.choices;
    record_.run.next_station = record.run.next_station;
  }

  const FoundSites& result() {
    if (!has_looked_) {
      has_looked_ = true;
      const QuietInterface quiet;
      ImportReport ignored;
      stopped_ = import_files(ImportMode::scan, files_, record_, ignored, {}) == Outcome::stopped;
    }
    return record_.run.found;
  }
  [[nodiscard]] bool stopped() const { return stopped_; }

 private:
  const std::vector<std::string>& files_;
  ReadingRecord record_;
  bool has_looked_ = false;
  bool stopped_ = false;
};

// False if the user doesn't want different sites on one station, or has stopped the look for them.
bool may_store(LookIntoFiles& look, ImportReport& report) {
  FilesAtStations survey;
  const std::vector<SharedStation> shared = shared_stations(look.result(), survey);
  if (look.stopped()) {
    report.stopped = true;
    return false;
  }
  return shared.empty() || user_interface().ask_yes_no("Different sites come to one line and station.\n" +
                                                       list_of_shared_stations(shared) +
                                                       "\nTake them as repeats of one station?");
}

// The files after the one that ended the run are listed as well, so that no file is missing from the report.
void report_files_left(const std::vector<std::string>& files, ImportReport& report) {
  for (std::size_t index = report.files.size(); index < files.size(); ++index) {
    FileReport& left = report.files.emplace_back();
    left.file = files[index];
    left.failure = "not imported: the run ended before this file";
  }
}

// A station may have been left by a file that was read after the one that came to it: only now is it known
// who is the first there.
void keep_sites_of_run(const ReadingRecord& record, ImportReport& report) {
  dao::Transaction transaction(open_survey().database);
  for (const auto& [file_index, site] : record.run.said_sites) {
    if (file_index >= report.files.size() || report.files[file_index].readings == 0) {
      continue;
    }
    if (const std::optional<std::string> kept = Module_database::keep_site(site)) {
      formats::remark_ignored(report.files[file_index], 0,
                              "site " + site.name + ": station " + plain_text(site.station) + " of line " +
                                  site.line + " is named " + *kept + " already",
                              "the station has another site's name already");
    }
  }
  transaction.commit();
}

int run(ImportMode mode, const std::vector<std::string>& files, ReadingRecord& record, ImportReport& report,
        const FileBegins& file_begins) {
  const Outcome imported =
      files.empty() ? Outcome::finished : import_files(mode, files, record, report, file_begins);
  if (imported == Outcome::failed) {
    report_files_left(files, report);
  }
  if (mode == ImportMode::scan) {
    return imported == Outcome::failed ? -1 : 0;
  }
  const int reduced = trap_errors(averaging_failed, [&] {
    for (const std::int32_t StationID : record.run.stations_left) {
      Module_averaged_data::drop_curves_without_readings(StationID);
    }
    reduce_touched(record, report);
  });
  return imported == Outcome::failed ? -1 : reduced;
}

}  // namespace

int run_import(const ImportChoices& choices, const std::vector<std::string>& files, ImportMode mode,
               ImportReport& report, const FileBegins& file_begins, SharedStations shared,
               const ImportPlan* plan) {
  ReadingRecord record;
  record.choices = choices;
  report = ImportReport{};
  if (test_choices(mode, record) != 0) {
    return -1;
  }
  Module_debug::write_debug(1,
                            "run_import " + plain_text(static_cast<std::int64_t>(files.size())) + " files");
  const BusyPointer busy;
  std::optional<ImportPlan> own;
  if (plan == nullptr && (choices.stations_by == StationsBy::distance || choices.count_sites)) {
    if (trap_errors(import_failed, [&] { own = own_plan(choices, files); }) != 0) {
      return -1;
    }
    plan = &*own;
  }
  record.run.plan = plan;
  LookIntoFiles look(record, files);
  if (mode == ImportMode::import && shared == SharedStations::ask && plan == nullptr) {
    bool may = false;
    if (trap_errors(import_failed, [&] { may = may_store(look, report); }) != 0) {
      return -1;
    }
    if (!may) {
      return 0;
    }
  }
  if (mode == ImportMode::import) {
    if (define_projection(choices) != 0) {
      return -1;
    }
    Module_Brenlox::clear_undo();  // rows that it would go back to may be replaced
  }
  record.run.free_stations =
      std::make_shared<FreeStations>([&]() -> const FoundSites& { return look.result(); });
  const int result = run(mode, files, record, report, file_begins);
  report.stations = std::move(record.scan_list);
  (void)trap_errors(import_failed, [&] {
    FilesAtStations survey;
    report.shared_stations = shared_stations(record.run.found, survey);
    remark_on_shared_stations(report.shared_stations, report.files);
    if (mode == ImportMode::import) {
      keep_sites_of_run(record, report);
    }
  });
  if (mode == ImportMode::import) {
    Module_database::settle_survey();
  }
  return result;
}

std::vector<std::string> find_import_files(const std::string& folder, const std::string& extension) {
  std::vector<std::string> files = Module_util::scan_directory(extension, folder);
  std::stable_sort(files.begin(), files.end(), comes_before_naturally);
  return files;
}

}  // namespace Module_data_file
