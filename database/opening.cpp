// Opening keeps one promise above all: whatever happens on the way, there is a survey at the path, and the
// earlier backup goes only for one of a survey that opens.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/debug_log.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/opening_progress.h"
#include "database/other_names.h"
#include "database/prepared_survey.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "database/upgrade.h"
#include "platform/files/file_lock.h"
#include "platform/files/lock_holder.h"
#include "platform/files/safe_files.h"
#include "platform/files/settled_path.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

constexpr std::string_view form_message = "This database does not have the required form";

// A folder's own file, where the path leads through a link: renames must meet the survey, not the link.
fs::path real_path(const fs::path& path) { return fs::canonical(path); }

// Two openings at once would each rename its own copy over the other's survey.
fs::path opening_lock_place(const fs::path& survey) {
  fs::path place = survey;
  place += ".opening";
  return place;
}

int refuse_form() {
  session().data_changed = false;
  reset_module();
  user_interface().show_message(std::string(form_message));
  return -1;
}

std::string listed(const std::vector<dao::SchemaObject>& objects) {
  constexpr std::size_t most_named = 5;
  constexpr std::size_t longest_name = 60;
  std::string text;
  for (std::size_t i = 0; i < std::min(objects.size(), most_named); ++i) {
    const dao::SchemaObject& object = objects[i];
    const bool is_view = object.kind == dao::SchemaObject::Kind::view;
    text += (i == 0 ? "" : ", ") + std::string(is_view ? "view " : "trigger ") +
            object.name.substr(0, longest_name);
    text += is_view ? "" : " on " + object.table.substr(0, longest_name);
  }
  const std::size_t others = objects.size() - std::min(objects.size(), most_named);
  return others == 0 ? text : text + " and " + std::to_string(others) + " more";
}

// The other stations can be worked on.
void tell_damaged_stations(const std::vector<std::string>& faults) {
  constexpr std::size_t most_named = 5;
  if (faults.empty()) {
    return;
  }
  std::string text = "Stations are left out of the lists, as their rows in StationsTable are damaged:";
  for (std::size_t i = 0; i < std::min(faults.size(), most_named); ++i) {
    text += "\n" + faults[i];
  }
  if (faults.size() > most_named) {
    text += "\nand " + std::to_string(faults.size() - most_named) + " more";
  }
  user_interface().show_message(text);
}

// What the user has to know about the survey that is open now.
void tell_findings(const PreparedSurvey& prepared) {
  if (!prepared.jet_kept_at.empty()) {
    user_interface().show_message(
        "This survey was kept in an older kind of database file and has been converted. The "
        "original file is kept for good as " +
        prepared.jet_kept_at.string());
  }
  if (!prepared.taken_out.empty()) {
    user_interface().show_message(
        "This survey carried triggers or views, which are never run here: " + listed(prepared.taken_out) +
        ". They have been taken out; " +
        (survey_is_read_only() ? session().database_file : backup_path(session().database_file)) +
        " keeps the file as it was.");
  }
  if (!prepared.other_name.empty()) {
    user_interface().show_message("This survey's file had another name as well" + prepared.other_name +
                                  ". That one stays as it was; " + session().database_file +
                                  " has a file of its own from now on.");
  }
  for (const std::string& table : prepared.missing_tables) {
    if (table == "FileTable") {
      user_interface().show_message(
          "This survey had no FileTable. Lines, reference types and dipole lengths come from its readings.");
    } else if (table == "ReadingsFrequencyTable") {
      user_interface().show_message(
          "This survey had no ReadingsFrequencyTable. The frequency lists were made again from its readings, "
          "with all frequencies on.");
    } else if (table == "StationsTable") {
      user_interface().show_message(
          "This survey had no StationsTable. Its readings belong to no station until their files are "
          "imported "
          "again.");
    }
  }
}

// The file lock of an opening and the engine's on the survey itself: either may be held.
std::string words_for_locked(const fs::path& survey) {
  std::string holder = lock_holder(survey);
  if (holder.empty()) {
    holder = lock_holder(opening_lock_place(survey));
  }
  return ". The survey is open in another window or program" + (holder.empty() ? "." : ": " + holder + ".");
}

// Compaction and backup take a survey's size each.
std::string words_for_full_disk(const fs::path& survey, const fs::path& folder) {
  const auto megabytes = [](std::uintmax_t bytes) {
    return format_number(static_cast<double>(bytes) / 1e6, "0.0") + " MB";
  };
  std::error_code unreadable;
  std::uintmax_t size = fs::file_size(survey);
  if (const std::uintmax_t log = fs::file_size(survey.string() + "-wal", unreadable); !unreadable) {
    size += log;
  }
  return "there is no room left on the disk of " + folder.string() + ". Opening " +
         survey.filename().string() + " needs up to " + megabytes(2 * size) +
         " there for a compacted copy and the backup, and " +
         megabytes(fs::space(folder, unreadable).available) +
         " are free. The survey and its earlier backup are as they were.";
}

int open_prepared_survey(PreparedSurvey prepared) {
  OpenSurvey& survey = open_survey();
  if (prepared.private_folder) {
    survey.private_folder = std::move(prepared.private_folder);
    survey.private_copy = prepared.private_copy.string();
  }
  if (!prepared.is_survey) {
    return refuse_form();
  }
  survey.database = dao::Database::open(working_file());
  session().database_open = true;
  if (!prepared.is_up_to_date) {
    Module_debug::write_debug(1, "upgrade_survey");
    prepared.missing_tables = upgrade_survey();
  }
  open_recordsets();
  const std::vector<std::string> damaged = damaged_stations();
  if (prepared.backup) {
    prepared.backup->put_into_place();
  }
  session().data_changed = false;
  tell_findings(prepared);
  tell_damaged_stations(damaged);
  return 0;
}

int open_survey_file(OpenFor purpose) {
  session().database_file = settled_path(session().database_file).string();
  const std::string& path = session().database_file;
  const fs::path survey = real_path(path);
  refuse_log_beside_other_name(survey);
  const bool in_place = purpose == OpenFor::editing && safe_files::may_be_written(survey) &&
                        safe_files::may_be_written(survey.parent_path());
  std::optional<FileLock> opening;
  if (in_place) {
    opening.emplace(opening_lock_place(survey));
    if (opening->state() == FileLock::State::held_elsewhere) {
      throw dao::LockedError();
    }
  }
  const auto prepared = [&] {
    const OpeningProgress progress(survey);
    return in_place ? prepare_in_place(survey, backup_path(path), progress)
                    : prepare_private_copy(survey, progress);
  };
  const auto tell_full_disk = [&] {
    return dao::Error(
        words_for_full_disk(survey, in_place ? survey.parent_path() : fs::temp_directory_path()));
  };
  try {
    return open_prepared_survey(prepared());
  } catch (const dao::FullError&) {
    throw tell_full_disk();
  } catch (const safe_files::DiskFull&) {
    throw tell_full_disk();
  }
}

}  // namespace

int open_database(OpenFor purpose) {
  Module_debug::write_debug(1, "open_database " + session().database_file);
  const BusyPointer busy;
  const int status = trap_errors("An error occurred while opening the database: ", [purpose] {
    try {
      return open_survey_file(purpose);
    } catch (const dao::LockedError& locked) {
      const std::string reason = locked.what() + words_for_locked(real_path(session().database_file));
      Module_debug::write_debug(1, reason);
      throw dao::Error(reason);
    } catch (const OpeningStopped&) {
      user_interface().show_message("The opening was stopped. The survey is as it was.");
      return -1;
    }
  });
  if (status != 0) {
    reset_module();
  } else {
    const std::string& path = session().database_file;
    open_survey().files_in_use =
        safe_files::FilesInUse({path, path + "-wal", path + "-shm", path + "-journal", backup_path(path)});
  }
  Module_debug::write_debug(1, status == 0 ? "open_database done" : "open_database failed");
  return status;
}

}  // namespace Module_database
