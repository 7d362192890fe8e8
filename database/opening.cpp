// Opening keeps one promise above all: whatever happens on the way, there is a survey at the path. The
// compacted copy is written beside it first; only then the earlier bytes become the ".bak" and the copy takes
// the path, each by one rename.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/legacy_check.h"
#include "database/schema.h"
#include "database/survey_database.h"
#include "platform/dao/compact.h"
#include "platform/files/file_lock.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

constexpr int required_tables = 6;  // of the seven names that a survey is known by
constexpr std::string_view form_message = "This database does not have the required form";

bool has_table(const std::vector<std::string>& names, std::string_view wanted) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& name) { return equal_ignoring_case(trimmed(name), wanted); });
}

bool has_required_form(const dao::Database& database) {
  const std::vector<std::string> names = database.table_names();
  const auto tables = survey_tables();
  const auto found = std::count_if(tables.begin(), tables.end(), [&](const TableSchema& table) {
    return table.required && has_table(names, table.name);
  });
  return found >= required_tables;
}

// A folder's own file, where the path leads through a link: renames must meet the survey, not the link.
fs::path real_path(const fs::path& path) { return fs::canonical(path); }

fs::path compacted_neighbour(const fs::path& survey) {
  fs::path neighbour = survey;
  neighbour += ".compacting";
  return neighbour;
}

// Two openings at once would each rename its own copy over the other's survey.
fs::path opening_lock_place(const fs::path& survey) {
  fs::path place = survey;
  place += ".opening";
  return place;
}

// What a crashed opening may have left; nothing in it is anyone's only copy.
void remove_compacted(const fs::path& fresh) {
  for (const char* ending : {"", "-journal", "-wal", "-shm"}) {
    std::error_code ignored;
    fs::remove(fs::path(fresh.string() + ending), ignored);
  }
}

// The name under which the bytes of a genuine Jet file are kept for good. A copy that an interrupted opening
// has left is used again.
fs::path jet_keeping_place(const fs::path& survey) {
  for (int number = 1;; ++number) {
    const std::string ending = number == 1 ? "_jet" : "_jet_" + std::to_string(number);
    fs::path place = survey.parent_path() / (survey.stem().string() + ending + survey.extension().string());
    if (!fs::exists(place) || safe_files::same_contents(place, survey)) {
      return place;
    }
  }
}

// A file without checksums shows its damage only in what no writer would have stored; a survey with such
// readings is an error. @return false if the file is no survey at all
bool converted_file_is_survey(const fs::path& fresh) {
  dao::Database converted = dao::Database::open(fresh.string(), dao::Access::read_only);
  if (!has_required_form(converted)) {
    return false;
  }
  check_legacy_survey(converted);
  return true;
}

// Steps from the file as it lies there to a compacted one at its path.
// @return where a genuine Jet file was kept; empty for any other. An unrelated Jet file is left alone and not
// kept.
struct Compaction {
  fs::path jet_kept_at;
  bool is_survey = true;
};

Compaction compact_in_place(const fs::path& survey, const fs::path& backup) {
  const bool is_jet = dao::file_kind(survey.string()) == dao::FileKind::genuine_jet;
  dao::recover_database(survey.string());
  if (dao::file_kind(survey.string()) == dao::FileKind::unknown) {
    throw dao::Error(
        "file is not a database");  // an empty file among them, which the engine would take for a new one
  }

  const fs::path fresh = compacted_neighbour(survey);
  remove_compacted(fresh);
  const ScopeGuard tidy([&] { remove_compacted(fresh); });
  dao::compact_database(survey.string(), fresh.string());

  Compaction result;
  if (is_jet) {
    if (!converted_file_is_survey(fresh)) {
      result.is_survey = false;
      return result;
    }
    result.jet_kept_at = jet_keeping_place(survey);
    if (!fs::exists(result.jet_kept_at)) {
      safe_files::copy_into_place(survey, result.jet_kept_at);
    }
  }
  std::error_code ignored;
  fs::permissions(fresh, fs::status(survey).permissions(), ignored);
  safe_files::copy_into_place(survey, backup);
  safe_files::move_into_place(fresh, survey);
  return result;
}

// Files carry no version: what an older one lacks is seen from its contents, and the statements do nothing to
// a current one.
void upgrade(dao::Database& database) {
  dao::Transaction transaction(database);
  const std::vector<std::string> names = database.table_names();
  for (const TableSchema& table : survey_tables()) {
    if (!has_table(names, table.name)) {
      create_table(database, table);
    }
  }
  database.execute("UPDATE ReadingsDataTable SET DataType  = 'ExHy' WHERE DataType  = 'Ex'");
  database.execute("UPDATE ReadingsDataTable SET DataType  = 'EyHx' WHERE DataType  = 'Ey'");
  // Merged curves from files were kept at the rate that was typed, where none looks for a merged curve.
  database.execute("UPDATE ReadingsDataTable SET SampleRate = 0 WHERE ReductionType = 2 AND SampleRate <> 0");
  create_search_indexes(database);
  transaction.commit();
}

int refuse_form() {
  session().data_changed = false;
  reset_module();
  user_interface().show_message(std::string(form_message));
  return -1;
}

int open_survey_file() {
  session().database_file = fs::absolute(session().database_file).string();
  const std::string& path = session().database_file;
  const fs::path survey = real_path(path);
  const FileLock opening(opening_lock_place(survey));
  if (opening.state() == FileLock::State::held_elsewhere) {
    throw dao::LockedError();
  }
  const Compaction compaction = compact_in_place(survey, backup_path(path));
  if (!compaction.is_survey) {
    return refuse_form();
  }
  dao::Database& database = open_survey().database;
  database = dao::Database::open(path);
  session().database_open = true;
  if (!has_required_form(database)) {
    return refuse_form();
  }
  upgrade(database);
  open_recordsets();
  session().data_changed = false;
  if (!compaction.jet_kept_at.empty()) {
    user_interface().show_message(
        "This survey was kept in an older kind of database file and has been converted. The "
        "original file is kept for good as " +
        compaction.jet_kept_at.string());
  }
  return 0;
}

}  // namespace

int open_database() {
  const BusyPointer busy;
  const int status = trap_errors("An error occurred while opening the database: ", [] {
    try {
      return open_survey_file();
    } catch (const dao::LockedError& locked) {
      throw dao::Error(locked.what() + std::string(". The survey is open in another window or program."));
    }
  });
  if (status != 0) {
    reset_module();
  } else {
    const std::string& path = session().database_file;
    open_survey().files_in_use =
        safe_files::InputFiles({path, path + "-wal", path + "-shm", path + "-journal"});
  }
  return status;
}

}  // namespace Module_database
