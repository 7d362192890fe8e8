// survey_fixture.h: a test with a folder, a recording user interface and, if it wants one, an open new
// survey.
#pragma once
#include <string>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

class SurveyTest : public ::testing::Test {
 public:
  SurveyTest() {
    reset_session_state();
    Module_database::reset_module();
  }
  ~SurveyTest() override { Module_database::reset_module(); }

 protected:
  /// Makes and opens a new survey in the test's folder; gives its path.
  std::string new_survey(const std::string& name = "survey.mdb") {
    session().database_file = folder.path(name);
    EXPECT_EQ(Module_database::create_database(), 0);
    EXPECT_EQ(Module_database::open_database(), 0);
    interface->progress.clear();  // of the opening; a test looks at that of its own work
    interface->progress_texts.clear();
    return session().database_file;
  }

  /// Closes and opens the survey again, as a new start of the program does.
  void reopen() {
    EXPECT_EQ(Module_database::close_database(), 0);
    EXPECT_EQ(Module_database::open_database(), 0);
  }

  static std::int32_t rows_in(const std::string& table) {
    const dao::Recordset rows =
        Module_database::open_survey().database.open_recordset("SELECT * FROM " + table);
    return rows.record_count();
  }

  TemporaryFolder folder;
  RecordingInterface interface;
};
