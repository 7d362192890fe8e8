// Two programs at one survey: one works, the other says who does.
#include <csignal>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "tests/batch/batch_program.h"
#include "tests/support/child_process.h"
#include "tests/support/recording_interface.h"

namespace {

const std::string locked =
    "An error occurred while opening the database: database is locked. The survey is open in another window "
    "or "
    "program";

}  // namespace

TEST_F(Batch_program, Names_the_program_that_has_the_survey_open) {
  write_field_files(1);
  import_field_files();
  const RecordingInterface interface;
  reset_session_state();
  session().database_file = folder_.path("survey.mdb");
  ASSERT_EQ(Module_database::open_database(), 0);
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"recalculate", "survey.mdb"}, {"info", "survey.mdb"}}) {
    const Outcome refused = run(command);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.errors.starts_with(locked + ": ")) << refused.errors;
    EXPECT_NE(refused.errors.find(", process " + std::to_string(getpid()) + " of "), std::string::npos)
        << refused.errors;
  }
  ASSERT_EQ(Module_database::close_database(), 0);
  EXPECT_EQ(run({"recalculate", "survey.mdb"}).status, 0);
}

TEST_F(Batch_program, A_plan_is_made_of_a_survey_of_one_moment) {
  write_field_files(1);
  import_field_files();
  const std::string survey = folder_.path("survey.mdb");
  const pid_t writer = start_child([&] {
    for (std::ofstream file(survey, std::ios::binary | std::ios::app);;) {
      file << 'x' << std::flush;
    }
  });
  // On a busy machine the writer may rest for as long as a copy takes: that one is of one moment.
  Outcome refused;
  for (int turn = 0; turn < 50 && refused.status != 1; ++turn) {
    refused = run({"import", "survey.mdb", "field", "--auto", "--dry-run"});
  }
  kill(writer, SIGKILL);
  (void)wait_for_child(writer);
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.errors, "An error occurred while copying the survey: database is locked\n");
  EXPECT_EQ(refused.output, "");
}

TEST_F(Batch_program, Of_two_that_start_together_at_least_one_does_its_work) {
  write_field_files(3);
  import_field_files();
  const std::string program = BRENLOX_BATCH_PROGRAM;
  int refused = 0;
  // On a busy machine one may have ended before the other begins.
  for (int turn = 0; turn < 10 || (refused == 0 && turn < 100); ++turn) {
    SCOPED_TRACE(turn);
    const auto one = [&](const std::string& name) {
      std::string command = "('" + program + "' recalculate survey.mdb >";
      command.append(name).append(".out 2>").append(name).append(".err; echo $? >").append(name);
      return command.append(".status) & ");
    };
    ASSERT_EQ(
        std::system(("cd '" + folder_.folder().string() + "'; " + one("a") + one("b") + "wait").c_str()), 0);
    int done = 0;
    for (const std::string name : {"a", "b"}) {
      const bool worked = file_contents(folder_.path(name + ".status")) == "0\n";
      const std::string errors = file_contents(folder_.path(name + ".err"));
      done += worked ? 1 : 0;
      refused += worked ? 0 : 1;
      EXPECT_TRUE(worked ? errors.empty() : errors.starts_with(locked)) << errors;
    }
    EXPECT_GE(done, 1);
  }
  EXPECT_GT(refused, 0) << "the two were never there at the same time";
  EXPECT_EQ(run({"recalculate", "survey.mdb"}).status, 0);
}
