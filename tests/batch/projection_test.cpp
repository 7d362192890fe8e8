// The survey's projection through the batch program.
#include <gtest/gtest.h>

#include "tests/batch/batch_program.h"
#include "tests/formats/edi/made_edi.h"

namespace {

const std::string header =
    "Name,Datum,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,Standard_parallel_"
    "2,"
    "Description,False_easting,False_northing,Scale_factor,Zone_width,Zone_number,ERM\n";

TEST_F(Batch_program, Projection_is_set_from_a_file_and_shown) {
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  (void)folder_.write(
      "list.csv", header + "MGA 55,4283,2,0,0,0,0,0,south,0,0,0,6,55\nOld grid,7,1,0,0,0,0,0,,0,0,0,6,0\n");
  EXPECT_EQ(run({"projection", "survey.mdb"}).output, "The survey has no projection\n");

  const Outcome set = run({"projection", "survey.mdb", "--set", "mga 55", "--csv", "list.csv"});
  EXPECT_EQ(set.status, 0) << set.errors;
  const Outcome shown = run({"projection", "survey.mdb"});
  EXPECT_EQ(shown.output, set.output);
  for (const char* const row : {"Name                 MGA 55 | south\n", "4283 GDA94\n",
                                "2 Universal Transverse Mercator", "Zone number          55\n"}) {
    EXPECT_NE(shown.output.find(row), std::string::npos) << row;
  }
  const Outcome old = run({"projection", "survey.mdb", "--set", "Old grid", "--csv", "list.csv"});
  EXPECT_NE(old.output.find("7 unknown, computed on Australian National Spheroid"), std::string::npos)
      << old.output;
}

TEST_F(Batch_program, Projection_faults_are_told_and_change_nothing) {
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  (void)folder_.write("list.csv",
                      header + "MGA 55,4283,2,0,0,0,0,0,,0,0,0,6,55\nFlat,4283,3,0,0,0,30,30,,0,0,0,6,55\n");
  (void)folder_.write("bad.csv", header + "MGA 55,4283,2\n");
  struct Case {
    std::vector<std::string> options;
    int status;
    const char* message;
  };
  const Case cases[] = {
      {{"--set", "MGA 55"}, 2, "--csv"},
      {{"--csv", "list.csv"}, 2, "--set"},
      {{"--set", "MGA 54", "--csv", "list.csv"},
       1,
       "list.csv has no projection MGA 54; it has: Flat, MGA 55"},
      {{"--set", "Flat", "--csv", "list.csv"}, 1, "Standard latitudes 1 and 2 must be distinct"},
      {{"--set", "MGA 55", "--csv", "bad.csv"}, 1, "line 2: there are 3 columns where 14 are needed"},
      {{"--set", "MGA 55", "--csv", "none.csv"}, 1, "none.csv doesn't exist"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    std::vector<std::string> arguments{"projection", "survey.mdb"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, c.status);
    EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
  }
  EXPECT_EQ(run({"projection", "survey.mdb"}).output, "The survey has no projection\n");
}

TEST_F(Batch_program, Import_converts_latitude_and_longitude_when_told) {
  write_field_files(1);
  const std::string placed = file_contents(folder_.path("field/L200E_S0100_E1_R4096.edi"));
  (void)folder_.write("field/L200E_S0200_E1_R4096.edi", replaced(placed, "LAT=", "NONE="));
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  std::vector<std::string> arguments = import_arguments("field");
  arguments.emplace_back("--convert-geographic");
  const Outcome undefined = run(arguments);
  EXPECT_EQ(undefined.status, 1);
  EXPECT_NE(undefined.errors.find("The projection has not been defined"), std::string::npos)
      << undefined.errors;

  (void)folder_.write("list.csv", header + "Degrees,0,0,0,0,0,0,0,,0,0,0,0,0\n");
  ASSERT_EQ(run({"projection", "survey.mdb", "--set", "Degrees", "--csv", "list.csv"}).status, 0);
  arguments.insert(arguments.end(), {"--report", "report.json"});
  const Outcome imported = run(arguments);
  EXPECT_EQ(imported.status, 0) << imported.errors;
  const std::string report = file_contents(folder_.path("report.json"));
  const std::size_t first = report.find("the head gives no latitude and longitude");
  EXPECT_NE(first, std::string::npos) << "the file without one says so";
  EXPECT_EQ(report.rfind("the head gives no latitude and longitude"), first) << "and it alone";
}

}  // namespace
