#include "app/survey_file_commands.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/undo_stack.h"
#include "projections/survey_projection.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

namespace {

namespace fs = std::filesystem;
using namespace Module_Brenlox;
using Messages = std::vector<std::string>;

class Survey_file_commands : public SurveyTest {
 protected:
  /// A closed survey with one reading.
  std::string survey_with_a_reading(const std::string& name) {
    std::string path = new_survey(name);
    made::store(made::key(), 0, made::reading({{1.0F, 10.0F, 45.0F}}));
    EXPECT_EQ(Module_database::close_database(), 0);
    return path;
  }
  // As the window does it: whatever is open is closed first.
  bool open(const std::string& path) {
    interface->path_answers.push_back(path);
    return close_survey() && open_chosen_survey();
  }
  static bool create() { return close_survey() && create_chosen_survey(); }
  static bool open_recent(std::size_t index) {
    return close_survey() && open_survey_file(std::string(session().recent_files.at(index)));
  }
  static void expect_no_survey() {
    EXPECT_FALSE(session().database_open);
    EXPECT_EQ(window_caption(), "BLX DATABASE");
  }
  static void expect_open(const std::string& path) {
    EXPECT_TRUE(session().database_open);
    EXPECT_EQ(session().database_file, path);
    EXPECT_EQ(window_caption(), "BLX DATABASE " + path);
  }

 private:
  // Opening a survey works in its folder, which the test removes.
  struct RestoreFolder {
    fs::path started_in = fs::current_path();
    ~RestoreFolder() { fs::current_path(started_in); }
  } restore_folder_;
};

TEST_F(Survey_file_commands, Open_starts_from_an_empty_session) {
  const std::string path = survey_with_a_reading("line5.mdb");
  push_undo_static(1, 2.0F);
  session().station_count = 3;
  EXPECT_TRUE(open(path));
  expect_open(path);
  EXPECT_EQ(session().recent_files[0], path);
  EXPECT_EQ(session().recent_count, 1);
  EXPECT_EQ(undo_count(), 0U);
  EXPECT_EQ(session().station_count, 0);
  ASSERT_EQ(interface->file_dialogs.size(), 1U);
  EXPECT_EQ(fs::current_path(), fs::canonical(folder.folder()));
  EXPECT_EQ(interface->file_dialogs[0].title, "Select the database file to open");
  EXPECT_EQ(interface->file_dialogs[0].filter, "Brenlox Database Files (*.mdb)|*.mdb|All files (*.*)|*.*");
  EXPECT_EQ(interface.take_messages(), Messages{});
}

TEST_F(Survey_file_commands, A_cancelled_or_failed_open_leaves_no_survey) {
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string text = folder.write("text.mdb", "this is no survey at all");
  const struct {
    const char* name;
    std::string answer;
    std::string message;  // its beginning; empty for none
  } cases[] = {{"cancelled", "", ""},
               {"missing", folder.path("missing.mdb"), "The specified file does not exist"},
               {"a folder", folder.folder().string(), "The specified file does not exist"},
               {"no survey", text, "An error occurred while opening the database: "}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_TRUE(open(path));
    expect_open(path);
    EXPECT_FALSE(open(c.answer));
    expect_no_survey();
    const Messages messages = interface.take_messages();
    ASSERT_EQ(messages.size(), c.message.empty() ? 0U : 1U);
    if (!messages.empty()) {
      EXPECT_EQ(messages[0].substr(0, c.message.size()), c.message);
    }
    EXPECT_EQ(session().recent_files[0], path);  // a failed one is not worth remembering
  }
}

TEST_F(Survey_file_commands, Close_ends_with_the_reset) {
  open(survey_with_a_reading("line5.mdb"));
  push_undo_static(1, 2.0F);
  session().station_count = 3;
  session().survey_header.grid_azimuth = 4.0;
  EXPECT_TRUE(close_survey());
  expect_no_survey();
  EXPECT_EQ(undo_count(), 0U);
  EXPECT_EQ(session().station_count, 0);
  EXPECT_EQ(session().survey_header.grid_azimuth, 0.0);
}

TEST_F(Survey_file_commands, New_makes_an_empty_survey_and_opens_it) {
  const std::string path = folder.path("new.mdb");
  interface->path_answers.push_back(path);
  EXPECT_TRUE(create());
  expect_open(path);
  EXPECT_TRUE(session().new_database);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 0);
  EXPECT_EQ(interface->file_dialogs.at(0).title, "Select the database file to create");
  EXPECT_EQ(interface->file_dialogs.at(0).default_extension, "*.mdb");
  EXPECT_TRUE(interface->questions.empty());
}

TEST_F(Survey_file_commands, New_over_an_existing_file_asks_first) {
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string earlier = file_contents(path);
  interface->path_answers = {path, path};
  interface->yes_no_answers = {false, true};
  EXPECT_FALSE(create());
  expect_no_survey();
  EXPECT_EQ(file_contents(path), earlier);
  EXPECT_EQ(interface->questions, Messages{"The specified file already exists. Overwrite?"});

  EXPECT_TRUE(create());
  expect_open(path);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 0);
  EXPECT_FALSE(fs::exists(path + ".replaced"));
}

TEST_F(Survey_file_commands, New_in_a_missing_folder_says_nothing_and_opens_nothing) {
  interface->path_answers.push_back(folder.path("no_such_folder/new.mdb"));
  EXPECT_FALSE(create());
  expect_no_survey();
  EXPECT_EQ(interface.take_messages(), Messages{});
}

TEST_F(Survey_file_commands, A_recent_file_opens_or_is_reported_and_stays_in_the_list) {
  const std::string first = survey_with_a_reading("first.mdb");
  const std::string second = survey_with_a_reading("second.mdb");
  open(first);
  open(second);
  EXPECT_TRUE(open_recent(1));
  expect_open(first);
  EXPECT_EQ(session().recent_files[0], first);
  EXPECT_EQ(session().recent_files[1], second);

  fs::remove(second);
  EXPECT_FALSE(open_recent(1));
  expect_no_survey();
  EXPECT_EQ(interface.take_messages(), Messages{"The specified file does not exist"});
  EXPECT_EQ(session().recent_files[1], second);
}

TEST_F(Survey_file_commands, Save_as_goes_on_with_a_whole_copy) {
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string copy = folder.path("copy.mdb");
  open(path);
  interface->path_answers.push_back(copy);
  EXPECT_TRUE(save_survey_as());
  expect_open(copy);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
  EXPECT_EQ(session().recent_files[0], copy);
  EXPECT_EQ(session().recent_files[1], path);
  open(path);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
}

TEST_F(Survey_file_commands, Save_as_refuses_the_name_of_the_present_file) {
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string same_name = folder.write("elsewhere/line5.mdb", "of somebody else");
  const std::string link = folder.path("link.mdb");
  fs::create_symlink(path, link);
  open(path);
  for (const std::string& answer : {path, same_name, link}) {
    SCOPED_TRACE(answer);
    interface->path_answers.push_back(answer);
    EXPECT_FALSE(save_survey_as());
    EXPECT_EQ(interface.take_messages(),
              Messages{"You must specify a name different from current database name"});
    expect_open(path);
  }
  EXPECT_EQ(file_contents(same_name), "of somebody else");

  fs::create_directory(folder.path("empty"));  // the same name where there is no such file is fine
  interface->path_answers.push_back(folder.path("empty/line5.mdb"));
  EXPECT_TRUE(save_survey_as());
  expect_open(folder.path("empty/line5.mdb"));
}

TEST_F(Survey_file_commands, Save_as_over_a_file_asks_first) {
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string other = new_survey("other.mdb");
  ASSERT_EQ(Module_database::close_database(), 0);
  open(path);
  interface->path_answers = {other, other};
  interface->yes_no_answers = {false, true};
  EXPECT_FALSE(save_survey_as());
  expect_open(path);
  EXPECT_TRUE(save_survey_as());
  expect_open(other);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
}

TEST_F(Survey_file_commands, A_save_as_that_fails_goes_on_with_the_survey_that_was_open) {
  const std::string path = survey_with_a_reading("line5.mdb");
  open(path);
  interface->path_answers.push_back(folder.path("no_such_folder/copy.mdb"));
  EXPECT_TRUE(save_survey_as());
  expect_open(path);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
  const Messages messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].find("An error occurred while creating the new database: "), 0U);
}

TEST_F(Survey_file_commands, Opening_reads_the_surveys_own_projection) {
  (void)new_survey("with.mdb");
  Module_projections::CoordSystem& current = Module_projections::current_coord_system();
  current = {};
  current.name = "Web";
  current.projection = numerics::geodesy::projection_epsg_3857;
  ASSERT_EQ(Module_projections::store_survey_projection(), 0);
  ASSERT_EQ(Module_database::close_database(), 0);
  current = {};
  open(folder.path("with.mdb"));
  EXPECT_EQ(current.name, "Web");
  EXPECT_NE(current.transform_parameters, numerics::geodesy::TransformParameters{});
  (void)survey_with_a_reading("without.mdb");
  open(folder.path("without.mdb"));
  EXPECT_EQ(current.name, "");
  EXPECT_TRUE(interface->messages.empty());
}

}  // namespace
