// A line by any name: what other programs have left in a survey, and what tables of curves name.
#include <filesystem>
#include <tuple>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "tests/batch/batch_program.h"
#include "tests/support/recording_interface.h"

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

const std::string odd_line = R"(O'Brien "7"; --)";

/// Renames the line behind the program's back.
void name_line(const std::string& survey, const std::string& line) {
  const RecordingInterface interface;
  session().database_file = survey;
  ASSERT_EQ(Module_database::open_database(), 0);
  dao::Database& database = Module_database::open_survey().database;
  for (const auto& [table, column] : {std::pair("StationsTable", "SurveyLine"),
                                      {"LocationLookupTable", "SurveyLine"},
                                      {"SitesTable", "SurveyLine"},
                                      {"FileTable", "LineNumber"},
                                      {"ReadingsDataTable", "LineNumber"}}) {
    database.execute(std::string("UPDATE ") + table + " SET " + column + " = " + dao::text_literal(line));
  }
  ASSERT_EQ(Module_database::close_database(), 0);
}

Arguments of_odd_line(const std::string& command, const Arguments& rest) {
  Arguments arguments{command, "survey.mdb", "--line", odd_line, "--reference", "0", "--dipole", "100"};
  arguments.insert(arguments.end(), rest.begin(), rest.end());
  return arguments;
}

int rows_of(const nlohmann::json& info, const char* table) { return info["tables"][table]; }

TEST_F(Batch_program, Works_on_a_line_whose_name_has_signs_of_the_statements) {
  write_field_files(3);
  import_field_files();
  name_line(folder_.path("survey.mdb"), odd_line);
  const nlohmann::json info = run_for_json({"info", "survey.mdb", "--json"});
  ASSERT_EQ(info["lines"][0]["line"], odd_line);

  const Arguments works[] = {
      {"recalculate", "survey.mdb"},
      of_odd_line("curve", {"--data-type", "ExHy", "--station", "100", "--reduction", "2", "--json"}),
      of_odd_line("zonge", {"--data-type", "ExHy", "--output", "line"}),
      of_odd_line("rhoplus", {"--data-type", "ExHy", "--directory", "rhoplus"}),
      of_odd_line("invert", {"--data-type", "ExHy", "--json", "chi.json"}),
      of_odd_line("consistency", {"--json"}),
      of_odd_line("tensor", {}),
      of_odd_line("strike", {"--json"}),
      {"export", "survey.mdb", "--line", odd_line, "--format", "csv", "--directory", "csv"},
      {"export", "survey.mdb", "--line", odd_line, "--format", "edi", "--directory", "edi"},
      {"export", "survey.mdb", "--line", odd_line, "--format", "kml", "--directory", "kml"},
      of_odd_line("occam", {"--data-type", "ExHy", "--directory", "run"}),
      {"occam-info", "run", "--json"},
#ifdef BRENLOX_WINDOWS
      of_odd_line("plots", {"--output", "line.pdf"}),
      of_odd_line("pseudosection", {"--quantity", "rho-xy", "--output", "line.png"}),
#endif
  };
  for (const Arguments& arguments : works) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors.find("syntax error"), std::string::npos) << outcome.errors;
  }
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"}), info) << "nothing that was read has changed";

  // The table of its curves comes back under the same name.
  ASSERT_EQ(run({"new", "again.mdb"}).status, 0);
  std::string table;
  for (const fs::directory_entry& file : fs::directory_iterator(folder_.path("csv"))) {
    if (file.path().filename().string().ends_with("_curves.csv")) {
      table = file.path().string();
    }
  }
  const Outcome again = run({"import", "again.mdb", "--auto", table});
  EXPECT_EQ(again.status, 0) << again.errors;
  const nlohmann::json back = run_for_json({"info", "again.mdb", "--json"});
  EXPECT_EQ(back["lines"], info["lines"]) << again.output << again.errors;

  EXPECT_EQ(run({"remove", "survey.mdb", "--station", odd_line + ",200"}).status, 0);
  EXPECT_EQ(rows_of(run_for_json({"info", "survey.mdb", "--json"}), "StationsTable"), 2);
  EXPECT_EQ(run({"rename", "survey.mdb", "--line", odd_line, "--to", "300E"}).status, 0);
  const nlohmann::json renamed = run_for_json({"info", "survey.mdb", "--json"});
  EXPECT_EQ(renamed["lines"], nlohmann::json::parse(R"([{"line": "300E", "stations": [100, 300]}])"));
}

// A run that hasn't begun shows the model it begins with.
#ifdef BRENLOX_WINDOWS
TEST_F(Batch_program, Draws_the_start_model_of_a_run_without_iterations) {
  write_field_files(3);
  import_field_files();
  ASSERT_EQ(run({"occam", "survey.mdb", "--line", "200E", "--reference", "0", "--data-type", "ExHy",
                 "--dipole", "100", "--directory", "run"})
                .status,
            0);
  const Outcome drawn = run({"section", "run", "--output", "start.png"});
  EXPECT_EQ(drawn.status, 0) << drawn.errors;
  EXPECT_NE(drawn.output.find("The section of the start model is written to "), std::string::npos)
      << drawn.output;
  EXPECT_GT(fs::file_size(folder_.path("start.png")), 1000U);
  EXPECT_EQ(run({"section", "run", "--iteration", "3", "--output", "none.png"}).status, 1);
  const Outcome response = run({"response", "run"});
  EXPECT_EQ(response.errors, "No iteration files were found at the specified location\n");
}
#endif

}  // namespace
