#include "app/survey_file_commands.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/preferences.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "platform/dao/compact.h"
#include "platform/files/safe_files.h"
#include "projections/survey_projection.h"

namespace fs = std::filesystem;

namespace Module_Brenlox {

namespace {

constexpr std::string_view caption_prefix = "BLX DATABASE";
constexpr std::string_view creating_failed = "An error occurred while creating the new database: ";
constexpr std::string_view opening_failed = "An error occurred while opening the database: ";

FileDialogRequest dialog(std::string title) {
  FileDialogRequest request;
  request.title = std::move(title);
  request.filter = "Brenlox Database Files (*.mdb)|*.mdb|All files (*.*)|*.*";
  request.default_extension = "*.mdb";
  return request;
}

bool file_exists(const std::string& path) {
  std::error_code unreadable;
  return fs::is_regular_file(path, unreadable);
}

// A survey goes by its file's name. A link to the current file is that file, whatever it is called.
bool is_name_of_current_file(const std::string& path) {
  const std::string& current = session().database_file;
  std::error_code missing;
  return file_exists(path) && (fs::path(path).filename() == fs::path(current).filename() ||
                               fs::equivalent(path, current, missing));
}

bool may_be_replaced(const std::string& path) {
  return !file_exists(path) || user_interface().ask_yes_no("The specified file already exists. Overwrite?");
}

// A file that is to be replaced may have a crashed run's journal beside it: the engine would replay it
// into the next file of that name, and the earlier file needs it if it has to be restored.
void settle_journal(const std::string& path) {
  for (const char* ending : {"-journal", "-wal"}) {
    if (file_exists(path + ending)) {
      dao::recover_database(path);
      return;
    }
  }
}

// Keeps a file that is to be replaced under another name until the new one is in place.
class FileSetAside {
 public:
  explicit FileSetAside(const std::string& path) : path_(path) {
    if (file_exists(path_)) {
      aside_ = path_ + ".replaced";
      fs::rename(path_, aside_);
    }
  }
  FileSetAside(const FileSetAside&) = delete;
  FileSetAside& operator=(const FileSetAside&) = delete;
  ~FileSetAside() {
    if (!aside_.empty()) {
      std::error_code ignored;
      fs::rename(aside_, path_, ignored);
    }
  }
  void discard() {
    if (!aside_.empty()) {
      fs::remove(std::exchange(aside_, {}));
    }
  }

 private:
  std::string path_;
  std::string aside_;  // empty: nothing to restore
};

/// Paths that the user types without a folder mean the survey's.
void work_in_survey_folder() {
  const fs::path folder = fs::path(session().database_file).parent_path();
  if (!folder.empty()) {
    fs::current_path(folder);
  }
}

bool open() {
  if (Module_database::open_database() != 0) {
    return false;
  }
  if (trap_errors(opening_failed, work_in_survey_folder) != 0) {
    (void)Module_database::close_database();
    return false;
  }
  (void)Module_projections::apply_survey_projection();  // a survey may have none
  add_recent_file(session().database_file);
  return true;
}

int create_new_survey(const std::string& path) {
  return trap_errors(creating_failed, [&] {
    settle_journal(path);
    FileSetAside earlier(path);
    session().database_file = path;
    if (Module_database::create_database() != 0) {
      return -1;
    }
    earlier.discard();
    session().new_database = true;
    return 0;
  });
}

int copy_survey(const std::string& from, const std::string& to) {
  return trap_errors(creating_failed, [&] {
    const BusyPointer busy;
    settle_journal(to);
    safe_files::copy_into_place(from, to);
  });
}

bool open_at(const std::string& path) {
  session().database_file = path;
  if (!file_exists(path)) {
    user_interface().show_message("The specified file does not exist");
    return false;
  }
  return open();
}

// The last word for what no operation has reported itself.
template <class Command>
bool run(std::string_view fixed_text, Command&& command) {
  bool done = false;
  return trap_errors(fixed_text, [&] { done = std::forward<Command>(command)(); }) == 0 && done;
}

}  // namespace

std::string window_caption() {
  return session().database_open ? std::string(caption_prefix) + " " + session().database_file
                                 : std::string(caption_prefix);
}

void reset_session() {
  refresh_recent_file_menu();
  session().survey_header = {};
  session().station_count = 0;
  session().stations_in_line = 0;
  clear_undo();
}

bool close_survey() {
  return run(opening_failed, [] {
    if (Module_database::close_database() != 0) {
      return false;
    }
    reset_session();
    return true;
  });
}

bool open_chosen_survey() {
  return run(opening_failed, [] {
    const std::string path = user_interface().select_file_to_open(dialog("Select the database file to open"));
    return !path.empty() && open_at(path);
  });
}

bool create_chosen_survey() {
  return run(creating_failed, [] {
    const std::string path =
        user_interface().select_file_to_create(dialog("Select the database file to create"));
    return !path.empty() && may_be_replaced(path) && create_new_survey(path) == 0 && open();
  });
}

bool open_survey_file(const std::string& path) {
  return run(opening_failed, [&] { return open_at(path); });
}

bool save_survey_as() {
  return run(opening_failed, [] {
    const std::string path =
        user_interface().select_file_to_create(dialog("Select the database file to create"));
    if (path.empty()) {
      return false;
    }
    if (is_name_of_current_file(path)) {
      user_interface().show_message("You must specify a name different from current database name");
      return false;
    }
    if (!may_be_replaced(path) || Module_database::close_database() != 0) {
      return false;
    }
    if (copy_survey(session().database_file, path) == 0) {
      session().database_file = path;
    }
    reset_session();
    static_cast<void>(open());  // after a message the window goes on without a survey
    return true;
  });
}

}  // namespace Module_Brenlox
