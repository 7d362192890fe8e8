// Opening keeps one promise above all: whatever happens on the way, there is a survey at the path. The
// compacted copy is written beside it first; only then the earlier bytes become the ".bak" and the copy takes
// the path, each by one rename.
#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/debug_log.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/compacted_mark.h"
#include "database/legacy_check.h"
#include "database/survey_check.h"
#include "database/survey_database.h"
#include "database/upgrade.h"
#include "platform/dao/compact.h"
#include "platform/files/file_lock.h"
#include "platform/files/lock_holder.h"
#include "platform/files/private_folder.h"
#include "platform/files/safe_files.h"
#include "platform/files/settled_path.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

constexpr std::string_view form_message = "This database does not have the required form";

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

constexpr std::array<const char*, 3> own_files{"", "-journal",
                                               "-wal"};  // endings of what a survey consists of

// Size and time of a survey's files; a missing one has neither.
auto state_with_log(const fs::path& survey) {
  std::array<std::pair<std::uintmax_t, fs::file_time_type>, own_files.size()> state;
  for (std::size_t i = 0; i < own_files.size(); ++i) {
    const fs::path file(survey.string() + own_files[i]);
    std::error_code missing;
    state[i] = {fs::file_size(file, missing), fs::last_write_time(file, missing)};
  }
  return state;
}

// A log beside the survey belongs to it, and so does a journal that a crash left. The files must be of one
// moment.
void copy_with_log(const fs::path& survey, const fs::path& copy, const safe_files::Watch& watch) {
  constexpr int attempts = 5;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const auto before = state_with_log(survey);
    for (const char* const ending : own_files) {
      const fs::path source(survey.string() + ending);
      const fs::path target(copy.string() + ending);
      std::error_code ignored;
      fs::remove(target, ignored);
      if (fs::exists(source)) {
        safe_files::copy_into_place(source, target, watch);
        fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
      }
    }
    if (state_with_log(survey) == before) {
      return;
    }
  }
  throw dao::LockedError();  // another program goes on writing it
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

/// The user has asked to stop.
class Stopped : public std::exception {};

/// How far the opening is, as one text and percentage; the user may stop it as long as nothing has taken the
/// survey's place.
class Progress {
 public:
  explicit Progress(const fs::path& survey) : opening_("Opening " + survey.filename().string() + ": ") {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { user_interface().show_progress("", -1); }

  /// Throws Stopped.
  void show(std::string_view what, double part) const {
    user_interface().show_progress(opening_ + std::string(what), static_cast<int>(100.0 * part));
    if (user_interface().stop_requested()) {
      throw Stopped();
    }
  }
  [[nodiscard]] safe_files::Watch of_copy() const {
    return [this](double part) { show("keeping the earlier state", part); };
  }
  [[nodiscard]] dao::CompactionWatch of_compaction() const {
    return [this](std::string_view what, double part) { show(what, part); };
  }

 private:
  std::string opening_;
};

// What was found on the way from the file as it lies there to a fresh one.
struct Compaction {
  bool is_jet = false;
  bool is_survey = true;
  fs::path jet_kept_at;                      // empty: not kept
  std::vector<dao::SchemaObject> taken_out;  // triggers and views
};

// Nothing in a file's schema is run here; from the fresh file it is gone, so that other programs don't run it
// either.
void take_out_triggers_and_views(const fs::path& fresh) {
  dao::Database database = dao::Database::open(fresh.string());
  database.drop_triggers_and_views();
  database.close();
  safe_files::flush_file(fresh);
}

// Looks at a file before it is worked on. A genuine Jet file has no checksums and shows its damage only in
// what no writer would have stored.
void look_through(const fs::path& fresh, Compaction& result) {
  dao::Database database = dao::Database::open(fresh.string(), dao::Access::read_only);
  result.is_survey = has_required_form(database);
  if (!result.is_survey) {
    return;
  }
  check_tables(database);
  if (result.is_jet) {
    check_legacy_survey(database);
  }
  result.taken_out = database.other_objects();
  std::erase_if(result.taken_out, [](const dao::SchemaObject& object) {
    return object.kind == dao::SchemaObject::Kind::virtual_table;
  });
}

// Recovers a survey and writes it, compacted and converted, to `fresh`.
Compaction make_fresh(const fs::path& survey, const fs::path& fresh, const Progress& progress) {
  Compaction result;
  result.is_jet = dao::file_kind(survey.string()) == dao::FileKind::genuine_jet;
  dao::recover_database(survey.string());
  if (dao::file_kind(survey.string()) == dao::FileKind::unknown) {
    throw dao::Error(
        "file is not a database");  // an empty file among them, which the engine would take for a new one
  }
  Module_debug::write_debug(1, "compact_database");
  remove_compacted(fresh);
  progress.show("checking", 0.0);
  dao::compact_database(survey.string(), fresh.string(), progress.of_compaction());
  look_through(fresh, result);
  if (!result.taken_out.empty()) {
    take_out_triggers_and_views(fresh);
  }
  return result;
}

// Beyond this reading a survey through would take as long as the compaction that is left out.
constexpr std::uintmax_t most_bytes_checked = 512U << 20U;

// A survey that was closed compact and that nothing has written since is taken as it is; only its backup is
// made, once the survey was found sound. Nothing comes back if it needs more.
std::optional<Compaction> keep_compacted(const fs::path& survey, const fs::path& backup,
                                         const Progress& progress) {
  if (!is_marked_compacted(survey)) {
    return std::nullopt;
  }
  dao::recover_database(survey.string());  // one that is in use is refused, and one with a log changes
  Compaction result;
  look_through(survey, result);
  if (!result.is_survey || !result.taken_out.empty() || !is_marked_compacted(survey)) {
    return std::nullopt;
  }
  Module_debug::write_debug(1, "keep_compacted");
  if (fs::file_size(survey) <= most_bytes_checked) {
    dao::check_database(survey.string(), progress.of_compaction());
  }
  safe_files::copy_into_place(survey, backup, progress.of_copy());
  return result;
}

// An unrelated Jet file is left alone and not kept.
Compaction compact_in_place(const fs::path& survey, const fs::path& backup, const Progress& progress) {
  if (const std::optional<Compaction> kept = keep_compacted(survey, backup, progress)) {
    return *kept;
  }
  const fs::path fresh = compacted_neighbour(survey);
  const ScopeGuard tidy([&] { remove_compacted(fresh); });
  Compaction result = make_fresh(survey, fresh, progress);
  if (result.is_jet && !result.is_survey) {
    return result;
  }
  if (result.is_jet) {
    result.jet_kept_at = jet_keeping_place(survey);
    if (!fs::exists(result.jet_kept_at)) {
      safe_files::copy_into_place(survey, result.jet_kept_at);
    }
  }
  std::error_code ignored;
  fs::permissions(fresh, fs::status(survey).permissions(), ignored);
  safe_files::copy_into_place(survey, backup, progress.of_copy());
  safe_files::move_into_place(fresh, survey);
  return result;
}

// A survey in a place that can't be written is worked on in a copy, which goes with the session. The original
// and its folder stay as they are.
Compaction compact_private_copy(const fs::path& survey, const Progress& progress) {
  Module_debug::write_debug(1, "compact_private_copy");
  auto folder = std::make_unique<PrivateFolder>();
  const fs::path copy = folder->path() / survey.filename();
  copy_with_log(survey, copy, progress.of_copy());
  const fs::path fresh = compacted_neighbour(copy);
  Compaction result = make_fresh(copy, fresh, progress);
  safe_files::move_into_place(fresh, copy);
  open_survey().private_folder = std::move(folder);
  open_survey().private_copy = copy.string();
  return result;
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

// What the user has to know about the survey that is open now.
void tell_findings(const Compaction& compaction, const std::vector<std::string>& missing_tables) {
  if (!compaction.jet_kept_at.empty()) {
    user_interface().show_message(
        "This survey was kept in an older kind of database file and has been converted. The "
        "original file is kept for good as " +
        compaction.jet_kept_at.string());
  }
  if (!compaction.taken_out.empty()) {
    user_interface().show_message(
        "This survey carried triggers or views, which are never run here: " + listed(compaction.taken_out) +
        ". They have been taken out; " +
        (survey_is_read_only() ? session().database_file : backup_path(session().database_file)) +
        " keeps the file as it was.");
  }
  for (const std::string& table : missing_tables) {
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

int open_survey_file(OpenFor purpose) {
  session().database_file = settled_path(session().database_file).string();
  const std::string& path = session().database_file;
  const fs::path survey = real_path(path);
  const bool in_place = purpose == OpenFor::editing && safe_files::may_be_written(survey) &&
                        safe_files::may_be_written(survey.parent_path());
  std::optional<FileLock> opening;
  if (in_place) {
    opening.emplace(opening_lock_place(survey));
    if (opening->state() == FileLock::State::held_elsewhere) {
      throw dao::LockedError();
    }
  }
  const Compaction compaction = [&] {
    const Progress progress(survey);
    return in_place ? compact_in_place(survey, backup_path(path), progress)
                    : compact_private_copy(survey, progress);
  }();
  if (!compaction.is_survey) {
    return refuse_form();
  }
  open_survey().database = dao::Database::open(working_file());
  session().database_open = true;
  Module_debug::write_debug(1, "upgrade_survey");
  const std::vector<std::string> missing_tables = upgrade_survey();
  open_recordsets();
  session().data_changed = false;
  tell_findings(compaction, missing_tables);
  return 0;
}

}  // namespace

int open_database(OpenFor purpose) {
  Module_debug::write_debug(1, "open_database " + session().database_file);
  const BusyPointer busy;
  const int status = trap_errors("An error occurred while opening the database: ", [purpose] {
    try {
      return open_survey_file(purpose);
    } catch (const dao::LockedError& locked) {
      throw dao::Error(locked.what() + words_for_locked(real_path(session().database_file)));
    } catch (const Stopped&) {
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
