// From field files to a run directory of the two-dimensional inversion and back, through the batch program.
#include <tuple>

#include "formats/occam/data_file.h"
#include "tests/batch/batch_program.h"

namespace {

using Json = nlohmann::json;

const std::vector<std::string> create{"occam",       "survey.mdb", "--line",   "200E", "--reference", "0",
                                      "--data-type", "ExHy",       "--dipole", "100",  "--directory", "run"};

TEST_F(Batch_program, Occam_makes_a_run_that_occam_info_reads_back) {
  write_field_files(4);
  import_field_files();
  std::vector<std::string> arguments = create;
  for (const char* argument : {"--layers", "10", "--block-width", "40", "--description", "a line"}) {
    arguments.emplace_back(argument);
  }
  const Outcome created = run(arguments);
  ASSERT_EQ(created.status, 0) << created.errors;
  EXPECT_NE(created.errors.find("Output complete. Number of data written: "), std::string::npos);

  const Json info = run_for_json({"occam-info", "run", "--json"});
  EXPECT_EQ(info["title"], "a line");
  EXPECT_EQ(info["model_file"], "inmodel");
  ASSERT_EQ(info["sites"].size(), 4U);
  for (const Json& site : info["sites"]) {
    EXPECT_EQ(site["offset"], site["node"]);  // each on a node of its own
  }
  EXPECT_EQ(info["layers"], 10);
  EXPECT_EQ(info["blocks"], info["parameters"]);
  EXPECT_TRUE(info["iterations"].empty());

  // An iteration as the inversion program leaves it.
  std::string iteration = file_contents(folder_.path("run/startup"));
  iteration.replace(iteration.find("ITERATION:        0"), 19, "ITERATION:        3");
  iteration.replace(iteration.find("TLAST:            100"), 21, "TLAST:            1.5");
  std::ignore = folder_.write("run/ITER03.iter", iteration);
  const Json later = run_for_json({"occam-info", "run", "--json"});
  ASSERT_EQ(later["iterations"].size(), 1U);
  EXPECT_EQ(later["iterations"][0]["iteration"], 3);
  EXPECT_EQ(later["iterations"][0]["misfit"], 1.5);
  EXPECT_EQ(later["iterations"][0]["parameters"], info["parameters"]);
  EXPECT_NE(run({"occam-info", "run"}).output.find("Iteration"), std::string::npos);
}

TEST_F(Batch_program, Occam_takes_both_modes_with_their_floors) {
  write_field_files(4);
  import_field_files();
  const std::vector<std::string> one_mode{
      "occam",    "survey.mdb", "--line",      "200E", "--reference",  "0",          "--dipole", "100",
      "--errors", "relative",   "--directory", "run",  "--no-rhoplus", "--overwrite"};
  const auto rows_of = [&](const std::vector<std::string>& options) {
    std::vector<std::string> arguments = one_mode;
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return Module_occam::read_data_file(folder_.path("run/occamdat")).rows;
  };
  const auto both =
      rows_of({"--modes", "both", "--te-res-floor", "8", "--phase-floor", "2", "--te-phase-floor", "3"});
  const auto te = rows_of({"--data-type", "EyHx", "--res-floor", "8", "--phase-floor", "3"});
  const auto tm = rows_of({"--data-type", "ExHy", "--phase-floor", "2"});
  const auto texts = [](const std::vector<Module_occam::DataRow>& rows, const Module_occam::Mode& mode) {
    std::vector<std::tuple<int, int, int, double, double>> found;
    for (const Module_occam::DataRow& row : rows) {
      if (mode.has(row.type)) {
        found.emplace_back(row.site_number, row.frequency_number, static_cast<int>(row.type), row.datum,
                           row.error);
      }
    }
    return found;
  };
  ASSERT_FALSE(te.empty());
  EXPECT_EQ(both.size(), te.size() + tm.size());
  EXPECT_EQ(texts(both, Module_occam::te_mode), texts(te, Module_occam::te_mode));
  EXPECT_EQ(texts(both, Module_occam::tm_mode), texts(tm, Module_occam::tm_mode));
  EXPECT_EQ(te.front().error, 0.0347);  // 0.08 / ln 10

  std::vector<std::string> wrong = one_mode;
  EXPECT_EQ(run(wrong).errors, "--data-type is required, unless --modes is both\n");
  wrong.insert(wrong.end(), {"--data-type", "EyHx", "--te-res-floor", "8"});
  EXPECT_EQ(run(wrong).errors, "--te-res-floor and --te-phase-floor need --modes both\n");
  EXPECT_EQ(run(wrong).status, 2);
}

TEST_F(Batch_program, Occam_replaces_an_inversion_only_when_told_to) {
  write_field_files(4);
  import_field_files();
  std::vector<std::string> arguments = create;
  ASSERT_EQ(run(arguments).status, 0);
  const std::string first = file_contents(folder_.path("run/startup"));
  arguments.insert(arguments.end(), {"--iterations", "7"});
  const Outcome kept = run(arguments);
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(kept.errors,
            "Replace the inversion in " + folder_.path("run") + "? It is kept in earlier_1. No\n");
  EXPECT_EQ(file_contents(folder_.path("run/startup")), first);
  arguments.emplace_back("--overwrite");
  EXPECT_EQ(run(arguments).status, 0);
  EXPECT_EQ(file_contents(folder_.path("run/earlier_1/startup")), first);
  EXPECT_NE(file_contents(folder_.path("run/startup")), first);
  EXPECT_EQ(run({"occam-info", "run/earlier_1"}).status, 0);
}

TEST_F(Batch_program, Occam_never_moves_the_survey_away) {
  write_field_files(4);
  import_field_files();
  std::vector<std::string> arguments = create;
  arguments.back() = ".";
  ASSERT_EQ(run(arguments).status, 0);
  arguments.emplace_back("--overwrite");
  for (const char* const name : {"survey.mdb", "SURVEY.MDB"}) {
    std::vector<std::string> over = arguments;
    over.insert(over.end(), {"--model-file", name});
    EXPECT_EQ(run(over).status, 1);
    EXPECT_TRUE(std::filesystem::exists(folder_.path("survey.mdb")));
    EXPECT_FALSE(std::filesystem::exists(folder_.path("earlier_1")));
  }
  EXPECT_EQ(run({"info", "survey.mdb"}).status, 0);
}

TEST_F(Batch_program, Occam_tells_what_is_wrong) {
  write_field_files(2);
  import_field_files();
  const Outcome few = run(create);
  EXPECT_EQ(few.status, 1);
  EXPECT_NE(few.errors.find("There are not enough stations for the current line"), std::string::npos);
  std::vector<std::string> arguments = create;
  arguments.insert(arguments.end(), {"--rms", "0"});
  const Outcome invalid = run(arguments);
  EXPECT_EQ(invalid.status, 2);
  EXPECT_EQ(invalid.errors, "The target RMS is invalid\n");
  arguments = create;
  arguments.insert(arguments.end(), {"--start-station", "300", "--end-station", "200"});
  const Outcome crossed = run(arguments);
  EXPECT_EQ(crossed.status, 2);
  EXPECT_EQ(crossed.errors, "The start station is greater than the end station\n");

  const Outcome nothing = run({"occam-info", "run"});
  EXPECT_EQ(nothing.status, 1);
  EXPECT_EQ(nothing.errors, "There is no start file and no iteration file\n");
  EXPECT_EQ(run({"occam-info", "gone"}).status, 1);
  EXPECT_EQ(run({"occam-info"}).status, 2);
}

}  // namespace
