#include "app/survey_file_commands.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/preferences.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "platform/dao/compact.h"
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

/// The file itself, also after it was removed or replaced by another.
bool is_current_file(const std::string& path) {
  const std::string& current = session().database_file;
  std::error_code missing;
  return session().database_open && (path == current || fs::equivalent(path, current, missing));
}

/// The dialog adds an ending only to a name without a point.
std::string with_survey_ending(const std::string& path) {
  return upper_case(path).ends_with(".MDB") ? path : path + ".mdb";
}

FileDialogRequest dialog_for_new_file() { return dialog("Select the database file to create"); }

/// Asks until the user names a free file or one that may be replaced.
/// @param is_refused says so itself
/// @return empty when cancelled or refused
std::string choose_new_file(FileDialogRequest request, bool (*is_refused)(const std::string& path)) {
  for (;;) {
    std::string path = user_interface().select_file_to_create(request);
    if (path.empty()) {
      return {};
    }
    path = with_survey_ending(path);
    if (is_refused(path)) {
      return {};
    }
    if (may_be_replaced(path)) {
      return path;
    }
    request.directory = fs::path(path).parent_path().string();
    request.suggested_name = fs::path(path).filename().string();
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

/// What follows an opening.
bool begin_work() {
  if (trap_errors(opening_failed, work_in_survey_folder) != 0) {
    (void)Module_database::close_database();
    return false;
  }
  (void)Module_projections::apply_survey_projection();  // a survey may have none
  reset_session();
  add_recent_file(session().database_file);
  return true;
}

/// Opens a survey in place of the one that is open, which stays if the other can't be opened.
bool open_instead(const std::string& path) {
  if (is_current_file(path)) {
    if (Module_database::close_database() != 0) {
      return false;
    }
    session().database_file = path;
    return Module_database::open_database() == 0 && begin_work();
  }
  Module_database::SurveySetAside earlier;
  session().database_file = path;
  if (Module_database::open_database() != 0 || !begin_work()) {
    return false;
  }
  return trap_errors("An error occurred while closing database: ", [&] { earlier.let_go(); }) == 0;
}

int create_new_survey(const std::string& path) {
  return trap_errors(creating_failed, [&] {
    dao::clear_place(path);
    FileSetAside earlier(path);
    const ScopedValue<std::string> file(session().database_file, path);
    if (Module_database::create_database() != 0) {
      return -1;
    }
    earlier.discard();
    session().new_database = true;
    return 0;
  });
}

bool open_at(const std::string& path) {
  if (!file_exists(path)) {
    user_interface().show_message("The specified file does not exist");
    return false;
  }
  return open_instead(path);
}

/// Makes a new file of the survey that is open now.
bool create_in_place_of_current(const std::string& path) {
  const std::string current = session().database_file;
  if (Module_database::close_database() != 0) {
    return false;
  }
  const bool created = create_new_survey(path) == 0;
  return open_instead(created ? path : current) && created;
}

bool create_survey(FileDialogRequest request) {
  const std::string path = choose_new_file(std::move(request), [](const std::string&) { return false; });
  if (path.empty()) {
    return false;
  }
  if (is_current_file(path)) {
    return create_in_place_of_current(path);
  }
  return create_new_survey(path) == 0 && open_instead(path);
}

// The last word for what no operation has reported itself.
template <class Command>
bool run(std::string_view fixed_text, Command&& command) {
  bool done = false;
  return trap_errors(fixed_text, [&] { done = std::forward<Command>(command)(); }) == 0 && done;
}

}  // namespace

std::string window_caption() {
  std::string caption(caption_prefix);
  if (session().database_open) {
    caption += " " + session().database_file;
    caption += Module_database::survey_is_read_only() ? " (read-only)" : "";
  }
  return caption;
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
  return run(creating_failed, [] { return create_survey(dialog_for_new_file()); });
}

bool create_proposed_survey(const std::string& name) {
  return run(creating_failed, [&] {
    FileDialogRequest request = dialog_for_new_file();
    request.suggested_name = name;
    return create_survey(std::move(request));
  });
}

bool create_survey_of_folder(const std::string& folder) {
  return run(creating_failed, [&] {
    FileDialogRequest request = dialog_for_new_file();
    const fs::path place = (fs::absolute(folder) / ".").parent_path();  // without a separator at its end
    request.directory = place.parent_path().string();
    request.suggested_name = (place.has_filename() ? place.filename().string() : "survey") + ".mdb";
    return create_survey(std::move(request));
  });
}

bool open_survey_file(const std::string& path) {
  return run(opening_failed, [&] { return open_at(path); });
}

bool save_survey_as() {
  return run(creating_failed, [] {
    const std::string path = choose_new_file(dialog_for_new_file(), [](const std::string& chosen) {
      const bool is_current = is_name_of_current_file(chosen);
      if (is_current) {
        user_interface().show_message("You must specify a name different from current database name");
      }
      return is_current;
    });
    if (path.empty()) {
      return false;
    }
    const int copied = trap_errors(creating_failed, [&] {
      const BusyPointer busy;
      Module_database::copy_survey_to(path);
    });
    // Closed first: the copy may stand where the survey was removed.
    if (copied != 0 || Module_database::close_database() != 0) {
      return false;
    }
    session().database_file = path;
    static_cast<void>(Module_database::open_database() == 0 && begin_work());
    return true;  // after a message the window goes on without a survey
  });
}

}  // namespace Module_Brenlox
