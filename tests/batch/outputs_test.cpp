// What the batch program says about the files that it writes, and which ones it doesn't write.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <tuple>

#include "core/session_state.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "tests/batch/batch_program.h"
#include "tests/support/recording_interface.h"

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

const std::string refused = " is one of the input files and is not written over";

Arguments of_line(const std::string& command, const Arguments& rest) {
  Arguments arguments{command, "survey.mdb",  "--line", "200E",     "--reference",
                      "0",     "--data-type", "ExHy",   "--dipole", "100"};
  arguments.insert(arguments.end(), rest.begin(), rest.end());
  return arguments;
}

TEST_F(Batch_program, Output_never_takes_the_place_of_the_survey_or_a_field_file) {
  write_field_files(3);
  import_field_files();
  fs::create_symlink("survey.mdb", folder_.path("link.json"));
  const std::string field_file = fs::directory_iterator(folder_.path("field"))->path().filename().string();
  const std::string field_text = file_contents(folder_.path("field/" + field_file));
  const auto import_to = [](const std::string& report) {
    Arguments arguments = import_arguments("field");
    arguments.insert(arguments.end(), {"--report", report});
    return arguments;
  };
  std::vector<Arguments> cases = {import_to("survey.mdb"), import_to("link.json"),
                                  import_to("field/" + field_file),
                                  of_line("invert", {"--json", "survey.mdb"}),
                                  of_line("occam", {"--directory", ".", "--model-file", "survey.mdb"})};
  if (program_draws) {
    cases.push_back({"plots", "survey.mdb", "--line", "200E", "--output", "survey.mdb"});
  }
  for (const Arguments& arguments : cases) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find(refused), std::string::npos) << outcome.errors;
    EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["tables"]["FileTable"], 18);
  }
  EXPECT_EQ(file_contents(folder_.path("field/" + field_file)), field_text);

  std::ignore = folder_.write("day.raw", "0001\nCSAMT\n");
  std::ignore = folder_.write("day.stn", "100 500100 6200000 351\n");
  const Outcome stations = run({"import", "survey.mdb", "day.raw", "--line", "200E", "--event", "0", "--rate",
                                "1", "--reference", "0", "--report", "day.stn"});
  EXPECT_EQ(stations.status, 1);
  EXPECT_NE(stations.errors.find(refused), std::string::npos) << stations.errors;
  EXPECT_EQ(file_contents(folder_.path("day.stn")), "100 500100 6200000 351\n");
}

TEST_F(Batch_program, Output_is_named_by_the_files_that_are_there) {
  write_field_files(2);
  ASSERT_EQ(run({"new", "survey.mdb"}).output,
            "An empty survey is written to " + folder_.path("survey.mdb") + "\n");
  Arguments import = import_arguments("field");
  import.insert(import.end(), {"--report", "report.json"});
  EXPECT_NE(run(import).output.find("The report is written to " + folder_.path("report.json") + "\n"),
            std::string::npos);

  const Outcome zonge = run(of_line("zonge", {"--output", "survey.mdb"}));
  EXPECT_EQ(zonge.status, 0) << zonge.errors;
  EXPECT_EQ(zonge.output, "58 rows written to " + folder_.path("survey.mdb.avg") +
                              ", with survey.mdb.mde and survey.mdb.stn\n");
  const Outcome again = run(of_line("zonge", {"--output", "survey.mdb"}));
  EXPECT_NE(again.errors.find(
                "already exists, overwrite? survey.mdb.avg, survey.mdb.mde and survey.mdb.stn are in " +
                folder_.folder().string()),
            std::string::npos)
      << again.errors;
  EXPECT_EQ(run(of_line("invert", {"--json", "out.json"})).errors,
            "The results are written to " + folder_.path("out.json") + "\n");
}

TEST_F(Batch_program, Help_is_text_of_every_command) {
  const Outcome all = run({"--help"});
  for (const char* command :
       {"new", "import", "recalculate", "info", "curve", "zonge", "rhoplus", "invert", "occam", "occam-info",
        "remove", "rename", "response", "grid", "mask-topo", "projection", "tensor", "export"}) {
    SCOPED_TRACE(command);
    EXPECT_NE(all.output.find(command), std::string::npos);
    const Outcome help = run({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(std::ranges::all_of(help.output, [](unsigned char c) {
      return c == '\n' || std::iscntrl(c) == 0;
    })) << help.output;
  }
  EXPECT_NE(run({"mask-topo", "--help"}).output.find("{bottom,left,right,top}"), std::string::npos);
}

TEST_F(Batch_program, A_switch_that_is_given_as_false_switches_nothing) {
  std::ignore = folder_.write("a.edi",
                              ">HEAD\n>=MTSECT\n SECTID=\"100\"\n NFREQ=3\n>FREQ //3\n 10 1 0.1\n"
                              ">RHOXY //3\n 100 100 1E32\n>PHSXY //3\n 50 45 1E32\n>END\n");
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  ASSERT_EQ(run({"import", "survey.mdb", "a.edi", "--line", "200E", "--event", "1", "--rate", "256",
                 "--reference", "0", "--sectid-as-station"})
                .status,
            0);
  const auto control_file = [this](const Arguments& switches) {
    Arguments arguments = of_line("rhoplus", {"--directory", "rho"});
    arguments.insert(arguments.end(), switches.begin(), switches.end());
    EXPECT_EQ(run(arguments).status, 0);
    return file_contents(folder_.path("rho/tmd_100.dat"));
  };
  const std::string plain = control_file({});
  EXPECT_EQ(control_file({"--include-empty=false"}), plain);
  EXPECT_NE(control_file({"--include-empty"}), plain) << "a row for the frequency without data";

  // Flags of true and false, and of 0 and 1, are stored differently.
  write_field_files(3);
  ASSERT_EQ(run(import_arguments("field")).status, 0);
  const auto data_file = [this](const Arguments& switches) {
    Arguments arguments = of_line("occam", {"--directory", "run"});
    arguments.insert(arguments.end(), switches.begin(), switches.end());
    EXPECT_EQ(run(arguments).status, 0);
    std::string written = file_contents(folder_.path("run/occamdat"));
    fs::remove_all(folder_.path("run"));
    return written;
  };
  const std::string by_formula = data_file({});
  EXPECT_EQ(data_file({"--standard-deviation=false"}), by_formula);
  EXPECT_NE(data_file({"--standard-deviation"}), by_formula);
}

/// Gives all merged curves of a survey errors of 10,000 ohm-m and 60 degrees.
void give_errors_of_files(const std::string& survey) {
  using namespace Module_database;
  const RecordingInterface interface;
  session().database_file = survey;
  ASSERT_EQ(open_database(), 0);
  dao::Recordset rows =
      open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE ReductionType = 2");
  for (; !rows.eof(); rows.move_next()) {
    StoredReading merged = read_reading(rows);
    for (std::size_t point = 0; point < merged.curve.count(); ++point) {
      merged.curve.error_at(field_resistivity, point) = 1e4F;
      merged.curve.error_at(field_phase, point) = 60.0F;
    }
    write_facts(merged.ID, merged.curve, merged.axes);
  }
  EXPECT_EQ(close_database(), 0);
}

TEST_F(Batch_program, Errors_of_files_count_when_they_are_asked_for) {
  write_field_files(3);
  import_field_files();
  give_errors_of_files(folder_.path("survey.mdb"));
  const auto run_both = [this](const std::string& command, const Arguments& rest) {
    Arguments arguments = of_line(command, rest);
    const Outcome plain = run(arguments);
    arguments.insert(arguments.begin() + 2, {"--file-errors"});
    const Outcome with_errors = run(arguments);
    EXPECT_EQ(plain.status + with_errors.status, 0) << plain.errors << with_errors.errors;
    return std::pair(plain.output, with_errors.output);
  };
  const auto first_row = [this](const std::string& file, const std::string& title) {
    const std::string text = file_contents(folder_.path(file));
    const std::size_t begin = text.find(title) + title.size();
    return text.substr(begin, text.find('\r', begin) - begin);
  };
  run_both("rhoplus", {"--directory", "rho"});
  const std::string row = first_row("rho/tmd_100.dat", "execute\r\n\r\n");
  EXPECT_EQ(row.substr(22, 10), "  10000.00") << row;
  EXPECT_EQ(row.substr(42, 10), "     60.00") << row;

  const auto [by_floors, by_files] = run_both("invert", {"--json", "-"});
  const auto chi_of = [](const std::string& text) -> double {
    return nlohmann::json::parse(text)[0]["achieved_chi"];
  };
  EXPECT_LT(chi_of(by_files), 0.1 * chi_of(by_floors));

  run_both("occam", {"--directory", "run", "--overwrite"});
  const std::string datum = first_row("run/occamdat", "DATATYPE,DATUM,ERROR\r\n");
  const std::string before = first_row("run/earlier_1/occamdat", "DATATYPE,DATUM,ERROR\r\n");
  EXPECT_EQ(datum.substr(0, 39), before.substr(0, 39));
  const double rho = std::pow(10.0, std::stod(datum.substr(26, 13)));
  EXPECT_NEAR(std::stod(datum.substr(39)), 1e4 / rho / std::numbers::ln10, 0.005) << datum;
  EXPECT_LT(std::stod(before.substr(39)), 1.0) << before;
}

}  // namespace
