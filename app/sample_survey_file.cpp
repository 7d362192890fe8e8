#include "app/sample_survey_file.h"

#include <filesystem>
#include <string>
#include <vector>

#include "app/survey_file_commands.h"
#include "core/finished_work.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "platform/files/safe_files.h"
#include "samples/sample_survey.h"

namespace fs = std::filesystem;

namespace Module_Brenlox {

namespace {

std::vector<std::string> write_field_files(const fs::path& folder) {
  fs::create_directories(folder);
  std::vector<std::string> paths;
  for (const Module_samples::SampleFile& file : Module_samples::make_sample_survey()) {
    const fs::path path = folder / file.name;
    safe_files::write_into_place(path, file.text);
    paths.push_back(path.string());
  }
  return paths;
}

}  // namespace

bool create_sample_survey() {
  if (!create_proposed_survey("sample.mdb")) {
    return false;
  }
  const fs::path survey = session().database_file;
  const fs::path folder = survey.parent_path() / (survey.stem().string() + "_field_files");
  Module_data_file::ImportReport report;
  static_cast<void>(trap_errors("An error occurred while making the sample survey: ", [&] {
    const BusyPointer busy;
    const std::vector<std::string> files = write_field_files(folder);
    if (run_import(Module_data_file::sample_choices(), files, Module_data_file::ImportMode::import, report) ==
            0 &&
        !report.stopped) {
      tell_finished("The sample survey is " + survey.string() + ", its field files are in " + folder.string(),
                    folder.string());
    }
    return 0;
  }));
  return true;  // also with a part of its readings only
}

}  // namespace Module_Brenlox
