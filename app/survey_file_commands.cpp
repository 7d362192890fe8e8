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

// A survey is known by its file's name. A link to the present file is that file, whatever it is called.
bool is_name_of_present_file(const std::string& path) {
  const std::string& present = session().database_file;
  std::error_code missing;
  return file_exists(path) && (fs::path(path).filename() == fs::path(present).filename() ||
                               fs::equivalent(path, present, missing));
}

bool may_be_replaced(const std::string& path) {
  return !file_exists(path) || user_interface().ask_yes_no("The specified file already exists. Overwrite?");
}

// A file that is to be replaced may have a crashed run's journal beside it: the engine would play it into the
// next file of that name, and the earlier file needs it if it has to be put back.
void settle_journal(const std::string& path) {
  for (const char* ending : {"-journal", "-wal"}) {
    if (file_exists(path + ending)) {
      dao::recover_database(path);
      return;
    }
  }
}

// Keeps a file that is to be replaced under another name until its successor stands.
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
  std::string aside_;  // empty: there is nothing to put back
};

int close_open_survey() { return Module_database::close_database(); }

/// Paths that the user types without a folder mean the survey's.
void work_in_survey_folder() {
  const fs::path folder = fs::path(session().database_file).parent_path();
  if (!folder.empty()) {
    fs::current_path(folder);
  }
}

void open_and_display(MainView& view) {
  if (Module_database::open_database() != 0) {
    return;
  }
  if (trap_errors(opening_failed, work_in_survey_folder) != 0) {
    (void)close_open_survey();
    return;
  }
  view.set_database_menus(true);
  view.set_caption(std::string(caption_prefix) + " " + session().database_file);
  (void)Module_projections::apply_survey_projection();  // a survey without one has none in force
  add_recent_file(session().database_file);
  view.show_recent_files();
  view.display_site_map();
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

void open_at(MainView& view, const std::string& path) {
  session().database_file = path;
  if (!file_exists(path)) {
    user_interface().show_message("The specified file does not exist");
    return;
  }
  open_and_display(view);
}

// The last word for what no operation has reported itself.
template <class Command>
void run(std::string_view fixed_text, Command&& command) {
  static_cast<void>(trap_errors(fixed_text, std::forward<Command>(command)));
}

}  // namespace

void menu_database_file(MainView& view, DatabaseFileItem item) {
  run(item == DatabaseFileItem::create ? creating_failed : opening_failed, [&] {
    if (close_open_survey() != 0) {
      return;
    }
    reset_session(view);
    if (item == DatabaseFileItem::open) {
      const std::string path =
          user_interface().select_file_to_open(dialog("Select the database file to open"));
      if (!path.empty()) {
        open_at(view, path);
      }
    } else if (item == DatabaseFileItem::create) {
      const std::string path =
          user_interface().select_file_to_create(dialog("Select the database file to create"));
      if (!path.empty() && may_be_replaced(path) && create_new_survey(path) == 0) {
        open_and_display(view);
      }
    }
  });
}

void menu_file_list(MainView& view, std::size_t index) {
  open_survey_file(view, std::string(session().recent_files.at(index)));
}

void open_survey_file(MainView& view, const std::string& path) {
  run(opening_failed, [&] {
    if (close_open_survey() != 0) {
      return;
    }
    reset_session(view);
    open_at(view, path);
  });
}

void menu_saveas(MainView& view) {
  run(opening_failed, [&] {
    const std::string path =
        user_interface().select_file_to_create(dialog("Select the database file to create"));
    if (path.empty()) {
      return;
    }
    if (is_name_of_present_file(path)) {
      user_interface().show_message("You must specify a name different from current database name");
      return;
    }
    if (!may_be_replaced(path) || close_open_survey() != 0) {
      return;
    }
    const bool copied = copy_survey(session().database_file, path) == 0;
    if (copied) {
      session().database_file = path;
    }
    reset_session(view);
    open_and_display(view);
  });
}

void reset_session(MainView& view) {
  const ScopedValue<bool> updating(session().updating_controls, true);
  view.set_database_menus(false);
  view.set_caption(std::string(caption_prefix));
  refresh_recent_file_menu();
  view.show_recent_files();
  view.show_opening_picture();
  session().survey_header = {};
  session().station_count = 0;
  session().stations_in_line = 0;
  clear_undo();
}

}  // namespace Module_Brenlox
