#include "rhoplus/station_inversion.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/sites.h"
#include "platform/files/safe_files.h"
#include "reduction/averages.h"
#include "reduction/unsupported_curves.h"
#include "rhoplus/inversion_log.h"

namespace fs = std::filesystem;

namespace Module_rhoplus {

namespace {

constexpr std::size_t longest_log = 32000;  // bytes

numerics::rhoplus::RhoplusSurface surface_of(const RhoplusSettings& settings) {
  return settings.surface == 0 ? numerics::rhoplus::RhoplusSurface::conducting
                               : numerics::rhoplus::RhoplusSurface::insulating;
}

/// The merged curve and what multiplies its resistivities. @return 0, or -1 after a message
int find_merged(const ReadingKey& key, const Frequencies& frequencies, const RhoplusSettings& settings,
                StationInversion& result) {
  result = {};
  const int status = Module_averaged_data::get_reduced_reading(Module_database::reduction_merged,
                                                               Module_averaged_data::AllowRaw::yes, key,
                                                               frequencies, result.merged);
  result.scale = settings.resistivity_scale * (settings.apply_static == 1 ? result.merged.ResOffset : 1.0F);
  result.unsupported = Module_averaged_data::unsupported_hint(
      {key.line, key.reference_type, key.data_type, key.dipole}, key.station);
  return status;
}

/// @return why the file is not there; empty if it is
std::string write_control_file(const fs::path& folder, const std::string& name, std::string_view text) {
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (failure) {
    return folder.string() + ": " + failure.message();
  }
  try {
    safe_files::write_into_place(folder / name, text);
  } catch (const std::runtime_error& reason) {
    return reason.what();
  }
  return {};
}

/// Inverts the rows and leaves control file and log; `result` keeps as much of the log as a text box takes.
/// @param title  of the data, in the log
void run_with_files(const fs::path& folder, const std::string& stem, const std::string& title,
                    const std::string& control_text, numerics::rhoplus::RhoplusSurface surface,
                    StationInversion& result) {
  std::string failure = write_control_file(folder, stem + ".dat", control_text);
  const bool folder_takes_files = failure.empty();
  numerics::rhoplus::RhoplusInversion details;
  result.run = numerics::rhoplus::rhoplus(result.tables.data, surface, &details);
  std::string log = inversion_log(title, result.tables.data, surface, result.run, details);
  if (folder_takes_files) {
    failure = write_log(folder / (stem + ".out"), log);
  }
  if (!failure.empty()) {
    result.missing_files =
        (folder_takes_files ? "The log was not written: " : "No files were left: ") + failure;
    log.insert(0, result.missing_files + "\r\n\r\n");
  }
  log.resize(std::min(log.size(), longest_log));
  result.log = std::move(log);
}

std::string in_brackets(const std::string& site_name) {
  return site_name.empty() ? std::string() : " (" + site_name + ")";
}

/// The stem of the station's files, with the name of its site: the heading of the log.
std::string log_title(const std::string& stem, const ReadingKey& key) {
  const std::optional<Module_database::Site> site = Module_database::find_site(key.line, key.station);
  return stem + in_brackets(site ? shown_name(*site) : std::string());
}

}  // namespace

std::string inversion_title(const std::string& line, double station, const std::string& site_name) {
  return "Rhoplus Inversion for Line " + line + ", Station " + format_number(station, "0") +
         in_brackets(site_name);
}

std::string log_or_reason(const StationInversion& inversion) {
  if (inversion.run.status == numerics::rhoplus::rhoplus_ran) {
    return inversion.log;
  }
  const std::string& reason = inversion.run.message;
  return reason.empty() ? nothing_inverted : std::string(nothing_inverted) + "\n" + reason;
}

std::string note_of(const StationInversion& inversion) {
  std::string note = inversion.missing_files.substr(0, inversion.missing_files.find(':'));
  if (!inversion.unsupported.empty()) {
    note += (note.empty() ? "" : "; ") + std::string("Rests on readings that are switched off");
  }
  if (inversion.run.limit_met) {
    note += (note.empty() ? "" : "; ") + std::string("The limit of iterations was met");
  }
  return note;
}

fs::path run_directory(const std::string& database_file, std::int32_t reference_type,
                       const std::string& line) {
  const char* const reference = reference_type == 0 ? "NRRef" : reference_type == 1 ? "RRef" : "XRef";
  std::string folder = line;
  std::ranges::replace_if(
      folder, [](char c) { return c == '/' || c == '\\' || c == ':'; }, '_');
  if (folder == "." || folder == "..") {
    folder = std::string(folder.size(), '_');
  }
  const std::string survey_folder = Module_util::directory_of(database_file);
  return fs::path(survey_folder.empty() ? "." : survey_folder) / reference / folder;
}

int prepare_inversion(const ReadingKey& key, const Frequencies& frequencies, const RhoplusSettings& settings,
                      StationTask& task) {
  task = {};
  task.key = key;
  return trap_errors(inversion_failed, [&] {
    StationInversion& inversion = task.inversion;
    if (find_merged(key, frequencies, settings, inversion) != 0) {
      return -1;
    }
    if (inversion.merged.ID == 0) {
      return 0;
    }
    inversion.tables = Module_output::rhoplus_tables(inversion.merged, frequencies, settings);
    if (!inversion.tables.data.empty()) {
      task.surface = surface_of(settings);
      task.folder = run_directory(session().database_file, key.reference_type, key.line);
      task.stem = Module_output::rhoplus_stem(settings, key.station);
      task.title = log_title(task.stem, key);
      task.control_text = Module_output::rhoplus_control_text(inversion.tables, settings, key.station);
    }
    return 0;
  });
}

void run_inversion(StationTask& task) {
  if (!task.inversion.tables.data.empty()) {
    run_with_files(task.folder, task.stem, task.title, task.control_text, task.surface, task.inversion);
  }
}

int invert_station(const ReadingKey& key, const Frequencies& frequencies, const RhoplusSettings& settings,
                   StationInversion& result) {
  StationTask task;
  const int status = prepare_inversion(key, frequencies, settings, task);
  const int run = status != 0 ? status : trap_errors(inversion_failed, [&] { run_inversion(task); });
  result = std::move(task.inversion);
  return run;
}

int invert_station_in_memory(const ReadingKey& key, const Frequencies& frequencies,
                             const RhoplusSettings& settings, StationInversion& result) {
  return trap_errors(inversion_failed, [&] {
    if (find_merged(key, frequencies, settings, result) != 0) {
      return -1;
    }
    result.tables = Module_output::rhoplus_tables(result.merged, frequencies, settings);
    if (!result.tables.data.empty()) {
      result.run = numerics::rhoplus::rhoplus(result.tables.data, surface_of(settings));
    }
    return 0;
  });
}

}  // namespace Module_rhoplus
