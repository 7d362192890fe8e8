// What the batch program says to wrong usage and bad input, and that nothing is lost by it.
#include <chrono>
#include <filesystem>
#include <thread>
#include <tuple>

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "tests/batch/batch_program.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

TEST_F(Batch_program, Every_command_has_help) {
  for (const char* command :
       {"new", "import", "recalculate", "info", "curve", "projection", "remove", "rename", "zonge"}) {
    SCOPED_TRACE(command);
    const Outcome help = run({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("SURVEY.mdb"), std::string::npos);
  }
  EXPECT_EQ(run({"--help"}).status, 0);
}

TEST_F(Batch_program, Wrong_usage_is_told_and_leaves_the_survey_unopened) {
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const fs::path survey = folder_.path("survey.mdb");
  fs::remove(folder_.path("survey.bak"));
  struct Case {
    std::vector<std::string> arguments;
    const char* message;
  };
  const auto import = [](std::vector<std::string> rest) {
    std::vector<std::string> arguments{"import", "survey.mdb", "a.edi"};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    return arguments;
  };
  const Case cases[] = {
      {{}, ""},
      {{"frobnicate"}, ""},
      {{"info"}, "SURVEY.mdb"},
      {{"new", "survey.db"}, "must end in .mdb"},
      {{"import", "survey.mdb", "--reference", "0"}, ""},
      {import({"--line", "200E", "--event", "0", "--rate", "1"}), "--reference"},
      {import({"--reference", "3", "--line", "200E", "--event", "0", "--rate", "1"}), "--reference"},
      {import({"--reference", "0", "--event", "0", "--rate", "1"}), "line"},
      {import({"--reference", "0", "--line", "2", "--event", "0", "--rate", "1", "--turn-ey=x"}),
       "--turn-ey"},
      {import({"--reference", "0", "--line", "200E", "--line-columns", "1,2", "--event", "0", "--rate", "1"}),
       "line"},
      {import({"--reference", "0", "--line", "200X", "--event", "0", "--rate", "1"}),
       "The supplied Line number suffix is not valid"},
      {import({"--reference", "0", "--line", "2x0", "--event", "0", "--rate", "1"}),
       "The supplied Line number is not valid"},
      {import({"--reference", "0", "--line-columns", "0,4", "--event", "0", "--rate", "1"}),
       "The start column for Line Number is invalid"},
      {import({"--reference", "0", "--line-columns", "a,4", "--event", "0", "--rate", "1"}), "START,WIDTH"},
      {import({"--reference", "0", "--line", "200E", "--event-columns", "3,0", "--rate", "1"}),
       "The column width for Event is invalid"},
      {import({"--reference", "0", "--line", "200E", "--event=-1", "--rate", "1"}),
       "The specified event value is invalid"},
      {import({"--reference", "0", "--line", "200E", "--event", "0", "--rate", "fast"}),
       "The specified Sample Rate is invalid"},
      {import({"--reference", "0", "--line", "200E", "--event", "0", "--rate", "0"}),
       "The Sample Rate cannot be zero for non-merged data"},
      {import({"--reference", "0", "--line", "200E", "--event", "0", "--rate", "1", "--station-step", "0"}),
       "The station spacing is invalid"},
      {import({"--reference", "0", "--line", "200E", "--event", "0", "--rate", "1", "--start-station", "x"}),
       "The start station number is invalid"},
      {{"curve", "survey.mdb", "--line", "200E", "--station", "x", "--reference", "0", "--data-type", "ExHy",
        "--dipole", "100", "--reduction", "2"},
       "--station"},
      {{"curve", "survey.mdb", "--line", "200E", "--station", "1", "--reference", "0", "--data-type", "Ex",
        "--dipole", "100", "--reduction", "2"},
       "--data-type"},
      {{"zonge", "survey.mdb", "--line", "200E", "--reference", "0", "--data-type", "ExHy", "--dipole",
        "100"},
       "--output"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.arguments));
    const Outcome outcome = run(c.arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_FALSE(outcome.errors.empty());
    EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
  }
  EXPECT_FALSE(fs::exists(folder_.path("survey.bak")));
}

TEST_F(Batch_program, What_is_no_survey_is_refused_and_stays_as_it_is) {
  struct Case {
    const char* name;
    std::string contents;
  };
  std::string binary(4096, '\0');
  for (std::size_t k = 0; k < binary.size(); ++k) {
    binary[k] = static_cast<char>(k * 131 % 251);
  }
  const Case cases[] = {{"empty.mdb", ""},
                        {"text.mdb", "not a survey\n"},
                        {"binary.mdb", binary},
                        {"cut.mdb", std::string("SQLite format 3\0", 16) + "cut"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::ignore = folder_.write(c.name, c.contents);
    const Outcome outcome = run({"info", c.name});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("An error occurred while opening the database: "), std::string::npos)
        << outcome.errors;
    EXPECT_EQ(file_contents(folder_.path(c.name)), c.contents);
  }
  fs::create_directory(folder_.path("folder.mdb"));
  EXPECT_EQ(run({"recalculate", "folder.mdb"}).errors,
            "An error occurred while opening the database: file is not a database\n");
  for (const char* path : {"missing.mdb", "no_folder/survey.mdb"}) {
    SCOPED_TRACE(path);
    const Outcome outcome = run({"recalculate", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "The specified file does not exist\n");
  }
  EXPECT_FALSE(fs::exists(folder_.path("missing.mdb")));
}

TEST_F(Batch_program, New_replaces_a_file_only_when_told_to) {
  write_field_files(1);
  import_field_files();
  const Outcome refused = run({"new", "survey.mdb"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.errors.find("The specified file already exists. Overwrite?"), std::string::npos);
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["tables"]["FileTable"], 6);
  EXPECT_EQ(run({"new", "survey.mdb", "--overwrite"}).status, 0);
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["tables"]["FileTable"], 0);

  fs::create_directory(folder_.path("folder.mdb"));
  EXPECT_EQ(run({"new", "folder.mdb", "--overwrite"}).status, 1);
  EXPECT_TRUE(fs::is_directory(folder_.path("folder.mdb")));
  const Outcome no_folder = run({"new", "nowhere/survey.mdb"});
  EXPECT_EQ(no_folder.status, 1);
  EXPECT_FALSE(no_folder.errors.empty());
}

TEST_F(Batch_program, Bad_field_files_are_named_and_the_good_ones_come_in) {
  write_field_files(1);
  std::ignore = folder_.write("field/L200E_S0100_E7_R4096.edi", "");
  std::ignore = folder_.write("field/L200E_S0100_E8_R4096.edi", std::string("\0\1\2\3\xff\xfe", 6));
  std::ignore = folder_.write("field/L200E_S0100_E9_R4096.edi", ">HEAD\n>=MTSECT\n NFREQ=3\n>FREQ\n 1 2");
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  fs::create_directory(folder_.path("nothing"));
  std::vector<std::string> arguments = import_arguments("field");
  arguments.insert(arguments.begin() + 3, {"nothing", "L200E_S0100_E6_R4096.edi"});
  arguments.insert(arguments.end(), {"--report", "report.json"});
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.status, 1);
  for (const char* named : {"E6_R", "E7_R", "E8_R", "E9_R", "nothing"}) {
    EXPECT_NE(outcome.errors.find(named), std::string::npos) << named << " in\n" << outcome.errors;
  }
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["tables"]["ReadingsDataTable"], 24 + 8 + 4);
  const Json report = Json::parse(file_contents(folder_.path("report.json")));
  ASSERT_EQ(report["files"].size(), 10U);
  for (const Json& file : report["files"]) {
    const std::string name = file["file"];
    const char repeat = name[name.find("_E") + 2];
    EXPECT_EQ(file["failure"].get<std::string>().empty(), repeat < '6') << file;
    EXPECT_EQ(file["readings"], repeat < '6' ? 4 : 0) << file;
  }
}

TEST_F(Batch_program, A_question_for_what_is_not_there_fails_with_a_message) {
  write_field_files(1);
  import_field_files();
  const auto curve = [&](const std::string& line, const std::string& reduction) {
    return run({"curve", "survey.mdb", "--line", line, "--station", "100", "--reference", "0", "--data-type",
                "ExHy", "--dipole", "100", "--reduction", reduction});
  };
  for (const char* reduction : {"0", "1", "2"}) {
    const Outcome outcome = curve("999E", reduction);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_FALSE(outcome.errors.empty());
    EXPECT_TRUE(outcome.output.empty());
  }
  EXPECT_NE(curve("200E", "1").errors.find("--rate"), std::string::npos) << "two scan rates, none chosen";
  const Outcome zonge = run({"zonge", "survey.mdb", "--line", "999E", "--reference", "0", "--data-type",
                             "ExHy", "--dipole", "100", "--output", "out.avg"});
  EXPECT_EQ(zonge.status, 1);
  EXPECT_NE(zonge.errors.find("There is no data for the specified line and data type"), std::string::npos);
  EXPECT_FALSE(fs::exists(folder_.path("out.avg")));
}

// Whoever waits for a pipe waits for ever, and hears no Ctrl+C.
TEST_F(Batch_program, What_is_no_file_is_refused_wherever_a_file_is_read) {
  write_field_files(1);
  import_field_files();
  ASSERT_EQ(::mkfifo(folder_.path("pipe.edi").c_str(), 0600), 0);
  fs::create_symlink("pipe.edi", folder_.path("pipe.mdb"));
  fs::create_directory(folder_.path("run"));
  fs::create_symlink("../pipe.edi", folder_.path("run/startup"));
  const std::string model = folder_.write("inmodel", "FORMAT: OCCAM2MTMOD_1.0\n");
  const auto import = [&](const std::string& path) {
    std::vector<std::string> arguments = import_arguments(path);
    arguments.erase(arguments.end() - 7, arguments.end());
    arguments.insert(arguments.end(), {"--line", "200E", "--event", "0", "--rate", "1"});
    return arguments;
  };
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {import("pipe.edi"), "pipe.edi is a pipe, not a file"},
      {import("/dev/zero"), "/dev/zero is a device, not a file"},
      {{"info", "pipe.mdb"}, "file is not a database"},
      {{"projection", "survey.mdb", "--set", "A", "--csv", "pipe.edi"}, "pipe.edi is a pipe, not a file"},
      {{"occam-info", "run"}, "startup is a pipe, not a file"},
      {{"mask-topo", "pipe.edi", "pipe.edi", "--output", "mesh"}, "pipe.edi is a pipe, not a file"}};
  for (const auto& [arguments, message] : cases) {
    SCOPED_TRACE(arguments[0] + " " + arguments[1]);
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find(message), std::string::npos) << outcome.errors;
  }
  std::vector<std::string> with_report = import("field");
  with_report.insert(with_report.end(), {"--report", "pipe.edi"});
  EXPECT_NE(run(with_report).errors.find("nobody reads from it"), std::string::npos);
}

// Ctrl+C ends an import between two files, with a status and a sound survey.
TEST_F(Batch_program, An_interrupt_stops_an_import_at_the_next_file) {
  write_field_files(12);
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  std::vector<std::string> arguments = import_arguments(folder_.path("field"));
  arguments[1] = folder_.path("survey.mdb");
  arguments.insert(arguments.begin(), BRENLOX_BATCH_PROGRAM);
  arguments.insert(arguments.begin() + 4, 20, folder_.path("field"));  // long enough to be met under way
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  pointers.push_back(nullptr);
  pid_t process = 0;
  ASSERT_EQ(posix_spawn(&process, BRENLOX_BATCH_PROGRAM, nullptr, nullptr, pointers.data(), environ), 0);
  int status = 0;
  pid_t ended = 0;
  while (ended == 0 && !fs::exists(folder_.path("survey.bak"))) {  // by then the handler is installed
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ended = waitpid(process, &status, WNOHANG);
  }
  ASSERT_EQ(ended, 0) << "ended before it opened the survey";
  kill(process, SIGINT);
  ASSERT_EQ(waitpid(process, &status, 0), process);
  ASSERT_TRUE(WIFEXITED(status)) << "ended by the signal";
  EXPECT_EQ(WEXITSTATUS(status), 1);
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  EXPECT_LT(info["tables"]["FileTable"], 72);
}

}  // namespace
