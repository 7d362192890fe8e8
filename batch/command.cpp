#include "batch/command.h"

#include <filesystem>
#include <system_error>

#include "batch/console_interface.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "platform/files/settled_path.h"

namespace Batch {

std::string path_from_here(const std::string& path) { return settled_path(path).string(); }

void add_overwrite_flag(Parser& parser, const char* help) {
  parser.add_flag(
      "--overwrite", [] { install_console(Answer::yes); }, help);
}

bool report_stop(const char* what_it_left) {
  if (!user_interface().stop_requested()) {
    return false;
  }
  user_interface().show_message(what_it_left);
  return true;
}

void add_survey_argument(Parser& parser, std::string& path) {
  parser.add_option("SURVEY.mdb", path, "the survey database").required();
}

int with_open_survey(const std::string& path, const std::function<int()>& work) {
  std::error_code unreadable;
  if (!std::filesystem::exists(path, unreadable)) {
    user_interface().show_message("The specified file does not exist");
    return status_failed;
  }
  session().database_file = path;
  if (Module_database::open_database() != 0) {
    return status_failed;
  }
  const int worked = trap_errors("An error occurred while working on the survey: ", work);
  const int closed = Module_database::close_database();
  return worked == 0 && closed == 0 ? status_done : status_failed;
}

int with_open_survey(const std::string& path, std::string& line, const std::function<int()>& work) {
  return with_open_survey(path, [&] {
    line = Module_database::spelled_line(line);
    return work();
  });
}

}  // namespace Batch
