#include "import/import_run.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include "core/debug_log.h"
#include "core/file_names.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "import/file_decode.h"
#include "import/file_transaction.h"
#include "import/natural_order.h"
#include "import/proposals/plan_maker.h"
#include "import/quiet_interface.h"
#include "import/readers/converted_place.h"
#include "import/readers/reader_steps.h"
#include "import/readers/reader_table.h"
#include "import/reduce_touched.h"
#include "import/store_blocks.h"
#include "import/survey_file_names.h"
#include "projections/survey_projection.h"
#include "reduction/computed_rows.h"
#include "reduction/each_item.h"

namespace Module_data_file {

using formats::FileReport;

namespace {

using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::WorkProgress;
using Module_database::open_survey;

constexpr const char* nothing_found = "neither an impedance section (>=MTSECT) nor any other data was found";

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
  return may_share_stations(texts_of(shared));
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
