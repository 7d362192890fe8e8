// The inversion of a run directory as a command.
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <sys/wait.h>

#include "tests/batch/batch_program.h"
#include "tests/occam/inversion/made_inversion.h"

namespace fs = std::filesystem;

namespace {

class Batch_inversion : public Batch_program {
 protected:
  Batch_inversion() { made::write_inversion(run_); }
  [[nodiscard]] Outcome invert(std::vector<std::string> options) const {
    options.insert(options.begin(), {"inversion", run_.folder().string()});
    return run(options);
  }
  [[nodiscard]] nlohmann::json json_of(const std::string& file) const {
    return nlohmann::json::parse(file_contents(folder_.path(file)), nullptr, false);
  }
  TemporaryFolder run_;
};

TEST_F(Batch_inversion, Prints_a_line_an_iteration_and_writes_the_course) {
  const Outcome outcome = invert({"--json", "course.json"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const nlohmann::json course = json_of("course.json");
  EXPECT_EQ(course["status"], 0);
  const auto steps = course["iterations"].size();
  ASSERT_GT(steps, 3U);
  for (std::size_t step = 0; step < steps; ++step) {
    const nlohmann::json& entry = course["iterations"][step];
    EXPECT_EQ(entry["iteration"], step);
    for (const char* number : {"rms", "roughness", "log10_multiplier", "step", "trials", "seconds"}) {
      EXPECT_TRUE(entry[number].is_number()) << number;
    }
  }
  EXPECT_LE(course["iterations"][steps - 1]["rms"], 1.0);
  // A header, a line for each, and the sentence that JSON has, too.
  EXPECT_EQ(static_cast<std::size_t>(std::count(outcome.output.begin(), outcome.output.end(), '\n')),
            steps + 2);
  EXPECT_TRUE(outcome.output.ends_with(course["reason"].get<std::string>() + "\n")) << outcome.output;
  EXPECT_EQ(outcome.errors, "");

  const nlohmann::json printed = run_for_json({"inversion", run_.folder().string(), "--overwrite",
                                               "--iterations", "1", "--static-shift", "0.1", "--json"});
  EXPECT_EQ(printed["iterations"].size(), 2U);
  EXPECT_EQ(printed["static_shifts"].size(), 6U);
  EXPECT_TRUE(fs::exists(run_.path("earlier_1/ITER03.iter")));
  const Outcome on = invert({"--continue", "--iterations", "1"});
  EXPECT_EQ(on.status, 0) << on.errors;
  EXPECT_TRUE(fs::exists(run_.path("SHIFT02.shift")));
  EXPECT_NE(on.output.find("in SHIFT02.shift"), std::string::npos) << on.output;
}

TEST_F(Batch_inversion, Says_why_it_can_t_also_as_json) {
  EXPECT_EQ(invert({"--iterations", "1"}).status, 0);
  const Outcome again = invert({"--json", "course.json"});
  EXPECT_EQ(again.status, 1);
  EXPECT_NE(again.errors.find("ITER00.iter to ITER01.iter"), std::string::npos) << again.errors;
  EXPECT_NE(again.errors.find("--overwrite"), std::string::npos);
  const nlohmann::json course = json_of("course.json");
  EXPECT_EQ(course["status"], 1);
  EXPECT_EQ(course["reason"].get<std::string>() + "\n", again.errors);
  EXPECT_TRUE(course["iterations"].empty());

  EXPECT_EQ(invert({"--continue", "--json", run_.path("occamdat")}).status, 1);
  EXPECT_NE(invert({"--continue", "--json", run_.path("ITER02.iter")}).errors.find("ends in .json"),
            std::string::npos);
  EXPECT_EQ(invert({"--continue", "--json", "gone/course.json"}).status, 1);
  EXPECT_FALSE(fs::exists(run_.path("ITER02.iter")));
  static_cast<void>(run_.write("RESP03.resp", ""));
  const Outcome beyond = invert({"--continue"});
  EXPECT_TRUE(beyond.errors.ends_with("into a folder of their own.\n")) << beyond.errors;
  static_cast<void>(run_.write("occamdat", ""));
  const Outcome empty = invert({"--overwrite"});
  EXPECT_EQ(empty.status, 1);
  EXPECT_NE(empty.errors.find("occamdat"), std::string::npos) << empty.errors;

  for (const std::vector<std::string>& options :
       std::vector<std::vector<std::string>>{{"--iterations", "0"},
                                             {"--iterations", "513"},
                                             {"--target-rms", "0"},
                                             {"--roughness-type", "2"},
                                             {"--search", "fast"},
                                             {"--static-shift", "-1"},
                                             {"--threads", "0"},
                                             {"--from", "startup", "--continue"},
                                             {"--huber=maybe"}}) {
    EXPECT_EQ(invert(options).status, 2) << options[0];
  }
}

TEST_F(Batch_inversion, Tells_both_inversions_apart) {
  EXPECT_NE(run({"inversion", "--help"}).output.find("\"invert\" is Rho+"), std::string::npos);
  EXPECT_NE(run({"invert", "--help"}).output.find("\"inversion\" is Occam"), std::string::npos);
}

TEST_F(Batch_inversion, Ctrl_C_stops_it_with_whole_iterations) {
  // So many frequencies that the signal comes in the midst of a search.
  Module_occam::DataFile data;
  data.positions = {200.0F, 600.0F, 1400.0F};
  data.site_names = {"a", "b", "c"};
  constexpr int frequencies = 1000;
  for (int frequency = 1; frequency <= frequencies; ++frequency) {
    data.frequencies.push_back(static_cast<float>(frequencies + 1 - frequency));
    for (int site = 1; site <= 3; ++site) {
      data.rows.push_back({site, frequency, Module_occam::DataType::tm_resistivity, 1.0 + site % 2, 0.02});
    }
  }
  static_cast<void>(run_.write("occamdat", data_file_text(data)));
  const std::string start = run_.path("ITER00.iter");
  const std::string command = "cd '" + folder_.folder().string() + "'; '" +
                              std::string(BRENLOX_BATCH_PROGRAM) + "' inversion '" + run_.folder().string() +
                              "' --huber --json c.json >out 2>err & "
                              "for wait in $(seq 2000); do [ -e '" +
                              start + "' ] && break; sleep 0.02; done; kill -INT $!; wait $!";
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  const nlohmann::json course = json_of("c.json");
  EXPECT_EQ(course["status"], 1);
  const std::string errors = file_contents(folder_.path("err"));
  EXPECT_TRUE(errors.ends_with("it can be continued.\n")) << errors;
  EXPECT_FALSE(fs::exists(run_.path("inversion.lock")));
  for (const fs::directory_entry& entry : fs::directory_iterator(run_.folder())) {
    EXPECT_FALSE(entry.path().string().ends_with(".writing"));
  }
}

}  // namespace
