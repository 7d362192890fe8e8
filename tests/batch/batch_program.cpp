#include "tests/batch/batch_program.h"

#include <cstdlib>
#include <tuple>

#include <sys/wait.h>

#include "samples/sample_survey.h"

namespace {

/// As one word of the shell, whatever signs it has.
std::string quoted(const std::string& text) {
  std::string word = "'";
  for (const char c : text) {
    word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return word + "'";
}

}  // namespace

Outcome Batch_program::run(const std::vector<std::string>& arguments) const {
  std::string command = "cd " + quoted(folder_.folder().string()) + " && " + quoted(BRENLOX_BATCH_PROGRAM);
  for (const std::string& argument : arguments) {
    command += " " + quoted(argument);
  }
  const int status = std::system((command + " >program.out 2>program.err").c_str());
  Outcome outcome;
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  outcome.output = file_contents(folder_.path("program.out"));
  outcome.errors = file_contents(folder_.path("program.err"));
  return outcome;
}

nlohmann::json Batch_program::run_for_json(const std::vector<std::string>& arguments) const {
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  return nlohmann::json::parse(outcome.output, nullptr, false);
}

void Batch_program::write_field_files(int stations) const {
  static const std::vector<Module_samples::SampleFile> files = Module_samples::make_sample_survey();
  constexpr std::size_t files_of_station =
      Module_samples::sample_scan_rates.size() * static_cast<std::size_t>(Module_samples::repeat_count);
  for (std::size_t index = 0; index < files_of_station * static_cast<std::size_t>(stations); ++index) {
    std::ignore = folder_.write("field/" + files[index].name, files[index].text);
  }
}

std::vector<std::string> Batch_program::import_arguments(const std::string& path) {
  return {"import", "survey.mdb",      path,   "--reference",    "0",    "--line-columns",
          "2,4",    "--event-columns", "14,1", "--rate-columns", "17,4", "--sectid-as-station"};
}

void Batch_program::import_field_files() const {
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const Outcome outcome = run(import_arguments("field"));
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
}
