#include "tests/soak/soak_survey.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "import/import_entries.h"
#include "import/import_files.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "samples/sample_survey.h"
#include "samples/tensor_line.h"
#include "tests/occam/inversion/made_inversion.h"
#include "tests/occam/results/made_results.h"

namespace {

std::string station_of(const Module_samples::SampleFile& file) { return file.name.substr(7, 4); }

bool is_wanted(const Module_samples::SampleFile& file) {
  const char repeat = file.name[13];
  return station_of(file) <= "0300" && repeat <= '2';
}

/// Two lines of off-diagonal curves, and one of tensors with tippers and places.
std::vector<Module_samples::SampleFile> wanted_files() {
  std::vector<Module_samples::SampleFile> files = Module_samples::make_sample_survey();
  std::erase_if(files, [](const auto& file) { return !is_wanted(file); });
  for (Module_samples::SampleFile& file : Module_samples::make_tensor_line()) {
    if (station_of(file) <= "2500") {
      files.push_back(std::move(file));
    }
  }
  return files;
}

}  // namespace

std::string make_soak_survey(const TemporaryFolder& folder) {
  std::vector<std::string> files;
  for (const Module_samples::SampleFile& file : wanted_files()) {
    files.push_back(folder.write("field/" + file.name, file.text));
  }
  static_cast<void>(folder.write("text.mdb", "line,station\n200E,100\n"));
  static_cast<void>(folder.write("empty.mdb", ""));
  static_cast<void>(made::write_results(folder, "run/"));
  made::write_inversion(folder);
  static_cast<void>(folder.write("run/points.xyz", "-100 0\n105 5\n120 12\n150 3\n260 -4\n"));

  const Module_data_file::ImportChoices choices = Module_data_file::sample_choices();
  Module_data_file::keep_import_folder(folder.path("field"));
  Module_data_file::keep_import_entries(choices);
  Module_data_file::ImportReport report;
  std::string survey = folder.path("survey.mdb");
  session().database_file = survey;
  if (Module_database::create_database() != 0 || Module_database::open_database() != 0 ||
      run_import(choices, files, Module_data_file::ImportMode::import, report) != 0 ||
      Module_database::close_database() != 0) {
    throw std::runtime_error("the survey can't be made");
  }
  return survey;
}
