// What stood in the directory of a run stays until the new run is whole, and an inversion beyond that.
#include "occam/results/run_results.h"
#include "tests/occam/setup/made_line_run.h"

namespace Module_occam {
namespace {

TEST_F(CreateInversionTest, A_stop_leaves_what_was_there_before) {
  new_survey();
  store_stations(equally_spaced(5));
  interface->stop = [this] { return interface->progress.size() > 2; };
  ASSERT_EQ(create(), 0);
  EXPECT_TRUE(created.stopped);
  EXPECT_FALSE(fs::exists(run()));

  interface->stop = [] { return false; };
  ASSERT_EQ(create(), 0);
  const auto before = files();
  inputs.block_width = "20";
  interface->progress.clear();
  interface->stop = [this] { return interface->progress.size() > 2; };
  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_TRUE(created.stopped);
  EXPECT_EQ(files(), before);
  EXPECT_FALSE(session().updating_controls);
  EXPECT_FALSE(interface->busy);
  EXPECT_EQ(interface->progress.back(), -1);
}

TEST_F(CreateInversionTest, Failures_are_reported_once_and_leave_what_was_there_before) {
  new_survey();
  store_stations(equally_spaced(3));
  ASSERT_EQ(create(), 0);
  interface.take_messages();
  fs::create_directory(run("a folder"));
  const auto before = files();
  const InversionInputs good = inputs;
  const auto expect_failure = [&](const std::string& message) {
    EXPECT_EQ(create_and_answer(true), -1);
    EXPECT_EQ(interface.take_messages(), Messages{message});
    EXPECT_EQ(files(), before);
    inputs = good;
  };
  inputs.data_file = "inmodel";
  expect_failure(failed + "two files of the inversion would have the name inmodel");
  inputs.data_file = "../occamdat";
  expect_failure(failed + "../occamdat is more than the name of a file");
  inputs.model_file = "a folder";  // seen when the earlier run has moved
  expect_failure(failed + run("a folder").string() + ": is a folder");
  inputs.model_file = "Startup";
  expect_failure(failed + "two files of the inversion would have the name Startup");
  inputs.directory = inputs.occam_directory = " ";
  expect_failure(failed + "no folder has been chosen");
  inputs.block_width = "0.0001";
  expect_failure(failed + "the block width is too small for the length of the line");
  inputs.num_layers = "2000";
  inputs.layers_per_decade = "1";
  expect_failure(failed + "the layers reach too deep");
  inputs.max_iterations = "x";
  expect_failure("The number of iterations is invalid");
}

/// What an inversion program and this one leave, with a file of the user's.
TEST_F(CreateInversionTest, An_earlier_inversion_is_kept_as_a_whole) {
  new_survey();
  store_stations(equally_spaced(3));
  ASSERT_EQ(create(), 0);
  std::string iteration = files().at("startup");
  iteration.replace(iteration.find("ITERATION:        0"), 19, "ITERATION:        7");
  write("ITER07.iter", iteration);
  write("RESP07.resp", "response");
  write("SHIFT07.shift", "static shifts");
  write("LogFile.logfile", "log");
  write("Brenlox/ITER07.xyz", "points");
  write("occam_run.sh", "#!/bin/sh\n/opt/occam2d\n");  // changed by the user
  write("notes.txt", "mine");
  interface.take_messages();
  auto before = files();

  inputs.num_layers = "20";
  EXPECT_EQ(create_and_answer(false), -1);
  EXPECT_EQ(interface->questions, Messages{"Replace the inversion in " + run().parent_path().string() +
                                           "? It is kept in earlier_1."});
  EXPECT_TRUE(interface.take_messages().empty());
  EXPECT_EQ(files(), before);
  inputs.first_station = "250";  // fails when the stations have been read
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(interface.take_messages(), Messages{too_few});
  EXPECT_EQ(files(), before);

  inputs.first_station = "";
  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(created.earlier_run, run("earlier_1").string());
  EXPECT_EQ(
      interface.take_messages(),
      Messages{"Output complete. Number of data written: 18. The files are in " +
               run().parent_path().string() + ", the earlier inversion in " + run("earlier_1").string()});
  EXPECT_EQ(file_contents(run("notes.txt").string()), "mine");
  EXPECT_NE(files().at("inmodel"), before.at("inmodel"));
  EXPECT_FALSE(fs::exists(run("ITER07.iter")));
  before.erase("notes.txt");
  EXPECT_EQ(files("earlier_1"), before);
  RunResults results;
  EXPECT_EQ(open_results(run("earlier_1/startup"), results), 0);
  EXPECT_EQ(results.last_iteration, 7);
  EXPECT_EQ(results.model.num_layers(), 24);

  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(created.earlier_run, run("earlier_2").string());
  EXPECT_EQ(files("earlier_1"), before);
}

TEST_F(CreateInversionTest, An_earlier_inversion_under_other_names_is_found) {
  new_survey();
  store_stations(equally_spaced(3));
  ASSERT_EQ(create(), 0);
  // As another program makes it: a start file of any name, the model in a folder of its own.
  std::string start = files().at("startup");
  start.replace(start.find("inmodel"), 7, "sub/Model");
  start.replace(start.find("occamdat"), 8, "Data.dat");
  std::string model = files().at("inmodel");
  model.replace(model.find("MESH FILE:        MESH"), 22, "MESH FILE:        mesh_topo");
  write("Occam2DStartup", start);
  write("sub/Model", model);
  write("Data.dat", files().at("occamdat"));
  write("mesh_topo", files().at("mesh"));
  for (const char* name : {"startup", "inmodel", "occamdat", "mesh", "MESH"}) {
    fs::remove(run(name));
  }
  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(interface->questions.size(), 1U);
  for (const char* name : {"Occam2DStartup", "sub/Model", "Data.dat", "mesh_topo"}) {
    EXPECT_TRUE(fs::exists(run("earlier_1") / name)) << name;
    EXPECT_FALSE(fs::exists(run(name))) << name;
  }
  // A run that needs a file beside its folder would lose it.
  start.replace(start.find("sub/Model"), 9, "../Model1");
  write("ITER_1", start);
  interface.take_messages();
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(
      interface.take_messages(),
      Messages{failed + "the earlier inversion there needs ../Model1, which it would not find once it is "
                        "moved; choose another folder"});
}

}  // namespace
}  // namespace Module_occam
