// window_fixture.h: what the tests of windows need: a folder, a recording user interface and, if one is
// wanted, an open new survey.
#pragma once
#include <QTest>
#include <filesystem>
#include <memory>

#include "core/session_state.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

class WindowFixture {
 protected:
  void make_folder() {
    reset_session_state();
    Module_database::reset_module();
    folder_ = std::make_unique<TemporaryFolder>();
    interface_ = std::make_unique<RecordingInterface>();
  }
  void make_survey() {
    session().database_file = folder_->path("survey.mdb");
    QCOMPARE(Module_database::create_database(), 0);
    QCOMPARE(Module_database::open_database(), 0);
  }
  /// After the windows are gone.
  void remove_folder() {
    Module_Brenlox::clear_undo();
    Module_database::reset_module();
    interface_.reset();
    std::filesystem::current_path(started_in_);
    folder_.reset();
  }

  std::unique_ptr<TemporaryFolder> folder_;
  std::unique_ptr<RecordingInterface> interface_;

 private:
  std::filesystem::path started_in_ =
      std::filesystem::current_path();  // opening a survey moves to its folder
};
