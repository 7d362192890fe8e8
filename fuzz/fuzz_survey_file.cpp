// A damaged survey file: four bytes of the input are a place and a value to put there. Opening says what is
// wrong, or the survey can be looked at and reduced again, or says where it can't.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "database/survey_summary.h"
#include "fuzz/input_file.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "platform/dao/error.h"
#include "reduction/averages.h"
#include "samples/sample_survey.h"

namespace {

/// The bytes of a survey of one station with two repeats.
std::string make_survey() {
  using namespace Module_data_file;
  std::vector<std::string> files;
  for (const Module_samples::SampleFile& file : Module_samples::make_sample_survey()) {
    if (files.size() < 2) {
      const auto* const text = reinterpret_cast<const std::uint8_t*>(file.text.data());
      files.push_back(write_input_file(text, file.text.size(), file.name));
    }
  }
  const std::string path = input_folder() + "/made.mdb";
  session().database_file = path;
  ImportReport report;
  if (Module_database::create_database() != 0 || Module_database::open_database() != 0 ||
      run_import(sample_choices(), files, ImportMode::import, report) != 0 ||
      Module_database::close_database() != 0) {
    std::abort();
  }
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string made = make_survey();
  std::string survey = made;
  for (std::size_t i = 0; i + 4 <= size; i += 4) {
    const std::size_t place = data[i] + 256UL * data[i + 1] + 65536UL * data[i + 2];
    survey[place % survey.size()] = static_cast<char>(data[i + 3]);
  }
  const std::string path =
      write_input_file(reinterpret_cast<const std::uint8_t*>(survey.data()), survey.size(), "survey.mdb");
  session().database_file = path;
  if (Module_database::open_database() == 0) {
    try {
      for (const Module_database::LineSummary& line : Module_database::read_survey_summary().lines) {
        (void)Module_database::stations_with_readings(line.line);
      }
      (void)Module_averaged_data::recalculate_merged();
    } catch (const dao::Error&) {  // a page that is damaged
    }
    (void)Module_database::close_database();
  }
  Module_database::reset_module();
  std::filesystem::remove(path + ".bak");
  return 0;
}
