// brenlox_batch new: creates an empty survey.
#include <filesystem>
#include <iostream>
#include <memory>

#include "batch/command.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "platform/dao/compact.h"

namespace Batch {
namespace {

int create(const std::string& path) {
  session().database_file = path;
  if (Module_database::create_database() == 0) {
    return 0;
  }
  if (!std::filesystem::exists(path)) {
    user_interface().show_message("The survey " + path + " can't be created");
  }
  return -1;
}

/// Replaces a file by a new survey; restores the file if that fails.
int replace(const std::string& path) {
  if (!std::filesystem::is_regular_file(path)) {
    user_interface().show_message(path + " is not a file");
    return -1;
  }
  dao::clear_place(path);  // a journal left beside it would be taken for the new survey's
  const std::string earlier = path + ".replaced";
  if (std::filesystem::exists(earlier)) {
    user_interface().show_message(earlier +
                                  " is in the way: an earlier replacement did not end. Move it aside.");
    return -1;
  }
  std::filesystem::rename(path, earlier);
  if (create(path) != 0) {
    std::filesystem::rename(earlier, path);
    return -1;
  }
  std::filesystem::remove(earlier);
  return 0;
}

int run_new(const std::string& survey) {
  if (upper_case(survey).find(".MDB") == std::string::npos) {
    user_interface().show_message("The name of a survey must end in .mdb");
    return status_wrong_usage;
  }
  const int result = trap_errors("An error occurred while creating the new database: ", [&] {
    if (!std::filesystem::exists(survey)) {
      return create(survey);
    }
    if (!user_interface().ask_yes_no("The specified file already exists. Overwrite?")) {
      return -1;
    }
    return replace(survey);
  });
  if (result != 0) {
    return status_failed;
  }
  std::cout << "An empty survey is written to " << path_from_here(survey) << '\n';
  return status_done;
}

}  // namespace

Command add_new_command(Program& program) {
  const auto survey = std::make_shared<std::string>();
  Parser parser = program.add_command("new", "Creates an empty survey");
  add_survey_argument(parser, *survey);
  add_overwrite_flag(parser, "replace a file that exists");
  return {parser, [survey] { return run_new(*survey); }};
}

}  // namespace Batch
