// Whether a survey's files are of one moment, and copies that are.
#include "database/survey_moment.h"

#include <chrono>
#include <filesystem>

#include "platform/dao/error.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;
namespace fs = std::filesystem;

TEST_F(SurveyTest, A_moment_ends_with_a_write_to_the_survey_or_to_what_stands_beside_it) {
  const std::string survey = folder.write("survey.mdb", std::string(200, 'a'));
  for (const std::string ending : {"", "-journal", "-wal"}) {
    SCOPED_TRACE(ending);
    const SurveyMoment before(survey);
    const std::string file = folder.write("survey.mdb" + ending, std::string(200, 'a'));
    if (!ending.empty()) {
      EXPECT_FALSE(before.is_now()) << "the file is new";
    }
    const SurveyMoment moment(survey);
    EXPECT_TRUE(moment.is_now() && moment.is_now_by_times());
    fs::last_write_time(file, fs::last_write_time(file) - std::chrono::seconds(2));
    EXPECT_FALSE(moment.is_now());
    EXPECT_FALSE(moment.is_now_by_times());
  }
  // Two writes within one tick of the clock differ in what the engine counts.
  const SurveyMoment moment(survey);
  const fs::file_time_type time = fs::last_write_time(survey);
  (void)folder.write("survey.mdb", std::string(24, 'a') + "b" + std::string(175, 'a'));
  fs::last_write_time(survey, time);
  EXPECT_TRUE(moment.is_now_by_times());
  EXPECT_FALSE(moment.is_now());
}

TEST_F(SurveyTest, A_copy_is_tried_five_times_while_another_program_writes) {
  const std::string survey = folder.write("survey.mdb", "first");
  (void)folder.write("survey.mdb-wal", "rows");
  const fs::path copy = folder.path("copy.mdb");
  (void)folder.write("copy.mdb-journal", "of an earlier copy");
  int writes_left = 8;  // two for each copy of survey and log
  const auto write_meanwhile = [&](double) {
    if (writes_left > 0) {
      (void)folder.write("survey.mdb", "written " + std::to_string(--writes_left));
    }
  };
  copy_with_log(survey, copy, write_meanwhile);
  if (writes_left == 8) {
    GTEST_SKIP() << "files are cloned here, which leaves no time to write in";
  }
  EXPECT_EQ(file_contents(copy.string()), "written 0");
  EXPECT_EQ(file_contents(copy.string() + "-wal"), "rows");
  EXPECT_FALSE(fs::exists(copy.string() + "-journal"));

  writes_left = 10;
  EXPECT_THROW(copy_with_log(survey, copy, write_meanwhile), dao::LockedError);
}
