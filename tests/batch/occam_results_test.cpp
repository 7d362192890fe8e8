// Responses, grids and sections of a run directory without a window.
#include <filesystem>

#include "tests/batch/batch_program.h"
#include "tests/occam/results/made_results.h"

namespace fs = std::filesystem;

namespace {

class Batch_results : public Batch_program {
 protected:
  Batch_results() {
    made::write_results(run_);
    directory = run_.folder().string();
  }
  TemporaryFolder run_;
  std::string directory;
};

TEST_F(Batch_results, Are_written_beside_the_run) {
  const Outcome response = run({"response", directory, "--iteration", "1"});
  EXPECT_EQ(response.status, 0) << response.errors;
  EXPECT_TRUE(fs::exists(run_.path("Brenlox/RESP_ITER_1.out")));
  const Outcome grid = run({"grid", directory});
  EXPECT_EQ(grid.status, 0) << grid.errors;
  for (const char* file : {"iter_3_logres.grd", "iter_3_res.grd", "iter_3_LogRes_smth.grd",
                           "iter_3_res_smth.grd", "iter_3.xyz", "iter_3_data_fit.dat"}) {
    EXPECT_TRUE(fs::exists(run_.folder() / "Brenlox" / file)) << file;
  }
  const Outcome none = run({"response", directory, "--iteration", "2"});
  EXPECT_EQ(none.status, 1);
  EXPECT_NE((none.output + none.errors).find("There is no file of iteration 2"), std::string::npos);
  EXPECT_EQ(run({"grid", folder_.folder().string()}).status, 1);  // not a run
}

TEST_F(Batch_results, Go_to_another_folder) {
  for (const char* command : {"response", "grid"}) {
    const Outcome outcome = run({command, directory, "--output", "here/new"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE((outcome.output + outcome.errors).find(folder_.path("here/new")), std::string::npos);
  }
  EXPECT_TRUE(fs::exists(folder_.path("here/new/RESP_iter_3.out")));
  EXPECT_TRUE(fs::exists(folder_.path("here/new/iter_3_data_fit.dat")));
  EXPECT_FALSE(fs::exists(run_.path("Brenlox/RESP_iter_3.out")));
}

TEST_F(Batch_results, Columns_of_the_list_stay_apart) {
  static_cast<void>(
      run_.write("ITER00.iter", made::replaced(made::iteration_text(0, made::nine_parameters),
                                               "RLAST:            20.5", "RLAST:            1.e+10")));
  const Outcome info = run({"occam-info", directory});
  EXPECT_EQ(info.status, 0) << info.errors;
  EXPECT_NE(info.output.find("\n0                   1.2500  10000000000.0000        5.0000\n"),
            std::string::npos)
      << info.output;
}

TEST_F(Batch_results, What_is_damaged_is_told) {
  static_cast<void>(run_.write("ITER_9", "FORMAT:           OCCAMITER_1.0\n"));
  const Outcome grid = run({"grid", directory});
  EXPECT_EQ(grid.status, 0) << grid.errors;
  EXPECT_NE(grid.errors.find("ITER_9 can't be read; iteration 3 is taken for the last one\n"),
            std::string::npos)
      << grid.errors;
  EXPECT_EQ(run({"grid", directory, "--iteration", "3"}).errors.find("taken for"), std::string::npos);
  fs::remove(run_.path("ITER_9"));

  EXPECT_EQ(run({"occam-info", directory}).errors, "");
  static_cast<void>(run_.write("occamdat", made::data.substr(0, made::data.size() - 20)));
  const Outcome info = run({"occam-info", directory});
  EXPECT_EQ(info.status, 0);
  EXPECT_NE(info.output.find("\n3 "), std::string::npos) << info.output;
  EXPECT_NE(info.errors.find("occamdat can't be read as a data file: "), std::string::npos) << info.errors;
}

TEST_F(Batch_results, Are_drawn) {
  if (!program_draws) {
    GTEST_SKIP() << "built without windows";
  }
  const auto begin = [this](const std::string& name) {
    return file_contents(folder_.path(name)).substr(0, 4);
  };
  const Outcome png = run({"section", directory, "--iteration", "3", "--output", "a.png", "--mesh"});
  EXPECT_EQ(png.status, 0) << png.errors;
  EXPECT_EQ(begin("a.png"), "\x89PNG");
  EXPECT_EQ(run({"section", directory, "--output", "a.pdf", "--log-depth", "--max-depth", "500"}).status, 0);
  EXPECT_EQ(begin("a.pdf"), "%PDF");
  EXPECT_EQ(run({"section", directory, "--output", "b.png", "--min-res", "3", "--max-res", "1"}).status, 1);
  EXPECT_FALSE(fs::exists(folder_.path("b.png")));

  for (const char* iteration : {"ITER_1", "iter_3"}) {
    fs::rename(run_.path(iteration), run_.path(std::string("kept_") + iteration));
  }
  const Outcome fresh = run({"section", directory, "--output", "fresh.png"});
  EXPECT_NE(fresh.output.find("The section of the start model is written to "), std::string::npos);
  EXPECT_EQ(begin("fresh.png"), "\x89PNG");
  EXPECT_EQ(run({"grid", directory}).status, 1) << "a start model has no iteration to name grids by";
  for (const char* iteration : {"ITER_1", "iter_3"}) {
    fs::rename(run_.path(std::string("kept_") + iteration), run_.path(iteration));
  }

  fs::copy_file(run_.path("startup"), run_.path("start.png"));
  const std::string start = file_contents(run_.path("start.png"));
  const Outcome over_input =
      run({"section", directory, "--control", "start.png", "--output", run_.path("start.png")});
  EXPECT_EQ(over_input.status, 1);
  EXPECT_NE(over_input.errors.find(" is one of the input files"), std::string::npos) << over_input.errors;
  EXPECT_EQ(file_contents(run_.path("start.png")), start);
}

}  // namespace
