// Files, stations and lines taken out and renamed through the batch program.
#include "tests/batch/batch_program.h"

namespace {

using Json = nlohmann::json;

/// Rows of a table as `info` counts them.
int rows_of(const Json& info, const char* table) { return info["tables"][table]; }

}  // namespace

TEST_F(Batch_program, Files_and_stations_go_by_name_and_unknown_ones_change_nothing) {
  write_field_files(3);  // two scan rates with three repeats each, four components
  import_field_files();
  const Json before = run_for_json({"info", "survey.mdb", "--json"});
  struct Case {
    const char* option;
    const char* value;
    const char* fault;
  };
  for (const Case& unknown : {Case{"--file", "nothing.edi", "The survey has no file nothing.edi\n"},
                              Case{"--station", "200E,7", "The survey has no station 7 on line 200E\n"},
                              Case{"--station", "200E", "'200E' is not LINE,STATION\n"},
                              Case{"--line", "7E", "The survey has no line 7E\n"}}) {
    const Outcome refused =
        run({"remove", "survey.mdb", "--file", "L200E_S0100_E1_R4096.edi", unknown.option, unknown.value});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors, unknown.fault);
  }
  const std::vector<std::string> remove{"remove",    "survey.mdb", "--file", "l200e_s0100_e1_r4096.EDI",
                                        "--station", "200e,300"};
  std::vector<std::string> dry = remove;
  dry.emplace_back("--dry-run");
  const Outcome told = run(dry);
  EXPECT_EQ(told.status, 0) << told.errors;
  EXPECT_NE(told.output.find("file L200E_S0100_E1_R4096.edi\n"), std::string::npos) << told.output;
  EXPECT_NE(told.output.find("line 200E station 300\n"), std::string::npos);
  EXPECT_NE(told.output.find("Would remove 7 files, 28 readings and 1 station; 4 averages"),
            std::string::npos);
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"}), before);

  const Outcome removed = run(remove);
  EXPECT_EQ(removed.output, "Removed 7 files, 28 readings and 1 station; 4 averages computed again\n");
  const Json after = run_for_json({"info", "survey.mdb", "--json"});
  EXPECT_EQ(rows_of(after, "FileTable"), 11);
  EXPECT_EQ(rows_of(after, "ReadingsDataTable"), 11 * 4 + 2 * (2 * 4 + 4));
  EXPECT_EQ(after["lines"][0]["stations"], (std::vector<double>{100, 200}));

  EXPECT_EQ(run({"remove", "survey.mdb"}).status, 2);
  EXPECT_EQ(run({"remove", "survey.mdb", "--ghosts"}).output, "Removed nothing; 0 averages computed again\n");
  EXPECT_EQ(run({"remove", "survey.mdb", "--line", "200E"}).status, 0);
  EXPECT_EQ(rows_of(run_for_json({"info", "survey.mdb", "--json"}), "ReadingsDataTable"), 0);
}

TEST_F(Batch_program, Lines_and_stations_are_renamed) {
  write_field_files(2);
  import_field_files();
  const std::vector<std::string> line{"rename", "survey.mdb", "--line", "200e", "--to"};
  const auto with = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = line;
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  };
  EXPECT_EQ(with({"200", "--station", "100"}).errors, "Line 200E has a station 200 already\n");
  EXPECT_EQ(with({"150", "--station", "170"}).errors, "The survey has no station 170 on line 200E\n");
  EXPECT_EQ(with({"150", "--station", "100"}).output, "Station 100 of line 200E is 150 now\n");
  EXPECT_EQ(with({"-250"}).output, "Line 200E is 250W now\n");
  EXPECT_EQ(with({"300"}).status, 1);
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  ASSERT_EQ(info["lines"].size(), 1U);
  EXPECT_EQ(info["lines"][0], Json::parse(R"({"line": "250W", "stations": [150, 200]})"));
}
