// The batch program masks a mesh as the window does.
#include <filesystem>

#include "tests/batch/batch_program.h"

namespace {

// Four columns and three rows of cells; the second layer holds two rows.
const std::string model =
    "FORMAT:           OCCAM2MTMOD_1.0\nMODEL NAME:       \nDESCRIPTION:      \nMESH FILE:        MESH\n"
    "MESH TYPE:        PW2D\nSTATICS FILE:     none\nPREJUDICE FILE:   none\nBINDING OFFSET:   10.0\n"
    "NUM LAYERS:       2\n 1 2\n 2 2\n 2 1\n 4\nNO. EXCEPTIONS:   0\n";
std::string mesh() {
  std::string text = " mesh\n 0 5 4 0 0 2\n 5 5 10 10\n 10 10 50\n 0\n";
  for (int line = 0; line < 12; ++line) {
    text += "????\n";
  }
  return text;
}

TEST_F(Batch_program, Masks_a_mesh_with_topography_and_tells_the_free_parameters) {
  ASSERT_FALSE(folder_.write("inmodel", model).empty());
  ASSERT_FALSE(folder_.write("mesh", mesh()).empty());
  ASSERT_FALSE(
      folder_.write("line.csv", "x,y,z\n0,0,100\n10,0,100\n15,0,94\n20,0,94\n25,0,94\n30,0,94\n").empty());
  std::vector<std::string> arguments{"mask-topo", "inmodel",  "line.csv",  "--elevation-column",
                                     "3",         "--output", "masked.msh"};
  EXPECT_EQ(run_for_json([&] {
              auto with_json = arguments;
              with_json.emplace_back("--json");
              return with_json;
            }()),
            nlohmann::json({{"points", 6},
                            {"datum_elevation", 100.0},
                            {"free_triangles_as_read", 48},
                            {"free_triangles", 40},
                            {"parameters_as_read", 3},
                            {"parameters", 2},
                            {"stations_on_a_wall", {"10"}},
                            {"mesh", folder_.path("masked.msh")},
                            {"model", nullptr},
                            {"start_file", nullptr}}));
  const std::string rectangular = file_contents(folder_.path("masked.msh"));
  EXPECT_NE(rectangular.find("     0\r\n??00\r\n??00\r\n??00\r\n??00\r\n????\r\n"), std::string::npos)
      << rectangular;

  const Outcome refused = run(arguments);
  EXPECT_NE(refused.errors.find("Line 1 is left out: no number for the station or the elevation\n"),
            std::string::npos);
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.errors.find("The specified file already exists. Overwrite? No"), std::string::npos);
  arguments.insert(arguments.end(),
                   {"--overwrite", "--style", "triangular", "--free-triangle", "left", "--datum", "112"});
  const Outcome done = run(arguments);
  EXPECT_EQ(done.status, 0);
  EXPECT_NE(done.output.find("The mesh is written to " + folder_.path("masked.msh")), std::string::npos);
  EXPECT_NE(done.errors.find("Number of free parameters: 24"), std::string::npos) << done.errors;
  EXPECT_NE(file_contents(folder_.path("masked.msh"))
                .find("     0\r\n0000\r\n0000\r\n0000\r\n0000\r\n0000\r\n????\r\n????\r\n0000\r\n????"),
            std::string::npos);

  EXPECT_EQ(run({"mask-topo", "inmodel", "none.csv", "--output", "other.msh"}).errors,
            "The specified data file does not exist\n");
  EXPECT_EQ(run({"mask-topo", "none", "line.csv", "--elevation-column", "3", "--output", "other.msh"}).errors,
            "The specified model file does not exist\n");
  EXPECT_EQ(run({"mask-topo", "inmodel", "line.csv", "--output", "o", "--style", "round"}).status, 2);
  for (const char* input : {"inmodel", "mesh", "line.csv"}) {
    const std::string before = file_contents(folder_.path(input));
    const Outcome over_input = run(
        {"mask-topo", "inmodel", "line.csv", "--elevation-column", "3", "--output", input, "--overwrite"});
    EXPECT_EQ(over_input.status, 1) << input;
    EXPECT_NE(over_input.errors.find(" is one of the input files"), std::string::npos) << over_input.errors;
    EXPECT_EQ(file_contents(folder_.path(input)), before);
  }
}

TEST_F(Batch_program, A_masked_mesh_comes_with_model_and_start_file_or_fails) {
  ASSERT_FALSE(folder_.write("inmodel", model).empty());
  ASSERT_FALSE(folder_.write("mesh", mesh()).empty());
  ASSERT_FALSE(folder_.write("line.csv", "x,y,z\n0,0,100\n10,0,100\n15,0,94\n20,0,94\n30,0,94\n").empty());
  ASSERT_FALSE(folder_
                   .write("startup",
                          "FORMAT:           OCCAMITER_1.0\nDESCRIPTION:      by hand\n"
                          "MODEL FILE:       inmodel\nDATA FILE:        occamdat\nDATE/TIME:        today\n"
                          "MAX ITER:         10\nREQ TOL:          1.0\nIRUF:             1\n"
                          "DEBUG LEVEL:      1\nITERATION:        0\nPMU:              5.0\n"
                          "RLAST:            20.5\nTLAST:            1.25\nIFFTOL:           0\n"
                          "NO. PARMS:        3\n 1.0 2.0 3.0\n")
                   .empty());
  const std::vector<std::string> arguments{"mask-topo", "inmodel",  "line.csv",  "--elevation-column",
                                           "3",         "--output", "masked.msh"};
  const Outcome done = run(arguments);
  EXPECT_EQ(done.status, 0) << done.errors;
  for (const char* const name :
       {"mesh is written to ", "model is written to ", "start file is written to "}) {
    EXPECT_NE(done.output.find(name + folder_.path("masked")), std::string::npos) << done.output;
  }
  EXPECT_NE(file_contents(folder_.path("masked_startup")).find("NO. PARMS:        2"), std::string::npos);

  // The user keeps the earlier ones; then one of them can't be replaced at all.
  std::filesystem::remove(folder_.path("masked.msh"));
  const Outcome kept = run(arguments);
  EXPECT_EQ(kept.status, 1);
  EXPECT_NE(kept.errors.find("Overwrite? " + folder_.path("masked_model") + ", " +
                             folder_.path("masked_startup") + " No"),
            std::string::npos)
      << kept.errors;
  EXPECT_FALSE(std::filesystem::exists(folder_.path("masked.msh")));
  std::filesystem::remove(folder_.path("masked_model"));
  std::filesystem::create_directories(folder_.path("masked_model/in_use"));
  std::vector<std::string> over = arguments;
  over.emplace_back("--overwrite");
  const Outcome failed = run(over);
  EXPECT_EQ(failed.status, 1);
  EXPECT_NE(failed.errors.find("An error occurred while creating the start file of the mesh: "),
            std::string::npos)
      << failed.errors;
  EXPECT_NE(failed.errors.find("masked_model"), std::string::npos) << failed.errors;
}

}  // namespace
