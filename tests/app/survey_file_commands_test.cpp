#include "app/survey_file_commands.h"

#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "core/undo_stack.h"
#include "database/compacted_mark.h"
#include "platform/files/file_lock.h"
#include "platform/files/file_mark.h"
#include "projections/survey_projection.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/child_process.h"
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
  bool open(const std::string& path) {
    interface->path_answers.push_back(path);
    return open_chosen_survey();
  }
  static bool open_recent(std::size_t index) {
    return open_survey_file(std::string(session().recent_files.at(index)));
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

TEST_F(Survey_file_commands, A_survey_stays_open_until_the_next_one_is) {
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string other = survey_with_a_reading("other.mdb");
  const std::string text = folder.write("text.mdb", "this is no survey at all");
  const std::string form = folder.path("form.mdb");
  dao::Database::create(form, "").execute("CREATE TABLE Notes (ID COUNTER)");
  const struct {
    const char* name;
    std::string answer;
    std::string message;  // its beginning; empty for none
  } cases[] = {{"cancelled", "", ""},
               {"missing", folder.path("missing.mdb"), "The specified file does not exist"},
               {"a folder", folder.folder().string(), "The specified file does not exist"},
               {"no survey", text, "An error occurred while opening the database: file is not a database"},
               {"another database", form, "This database does not have the required form"},
               {"in use", other, "An error occurred while opening the database: database is locked."}};
  EXPECT_TRUE(open(path));
  push_undo_static(1, 2.0F);
  session().station_count = 3;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string lock = c.answer + ".opening";
    const std::unique_ptr<FileLock> opening = c.answer == other ? std::make_unique<FileLock>(lock) : nullptr;
    EXPECT_FALSE(open(c.answer));
    EXPECT_FALSE(open_survey_file(c.answer.empty() ? folder.path("gone.mdb") : c.answer));
    expect_open(path);
    EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
    EXPECT_EQ(undo_count(), 1U);
    EXPECT_EQ(session().station_count, 3);
    const Messages messages = interface.take_messages();
    ASSERT_EQ(messages.size(), c.message.empty() ? 1U : 2U);
    EXPECT_TRUE(c.message.empty() || messages[0].starts_with(c.message)) << messages[0];
    EXPECT_EQ(session().recent_files[0], path);  // a failed one is not worth remembering
  }
  EXPECT_TRUE(open(other));
  expect_open(other);
  EXPECT_EQ(undo_count(), 0U);
  EXPECT_TRUE(open(other)) << "the survey that is open may be opened again";
  expect_open(other);
  EXPECT_FALSE(fs::exists(path + "-wal")) << "the earlier survey was closed";
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
  EXPECT_TRUE(create_chosen_survey());
  expect_open(path);
  EXPECT_TRUE(session().new_database);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 0);
  EXPECT_EQ(interface->file_dialogs.at(0).title, "Select the database file to create");
  EXPECT_EQ(interface->file_dialogs.at(0).default_extension, "*.mdb");
  EXPECT_TRUE(interface->questions.empty());
}

TEST_F(Survey_file_commands, New_over_an_existing_file_asks_for_another_name_after_no) {
  const std::string current = survey_with_a_reading("current.mdb");
  const std::string path = survey_with_a_reading("line5.mdb");
  const std::string earlier = file_contents(path);
  EXPECT_TRUE(open(current));
  interface->file_dialogs.clear();
  interface->path_answers = {path, ""};
  interface->yes_no_answers = {false};
  EXPECT_FALSE(create_chosen_survey());
  expect_open(current);
  EXPECT_EQ(file_contents(path), earlier);
  EXPECT_EQ(interface->questions, Messages{"The specified file already exists. Overwrite?"});
  ASSERT_EQ(interface->file_dialogs.size(), 2U);
  EXPECT_EQ(interface->file_dialogs[1].suggested_name, "line5.mdb");

  interface->path_answers = {path, path};
  interface->yes_no_answers = {false, true};
  EXPECT_TRUE(create_chosen_survey());
  expect_open(path);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 0);
  EXPECT_FALSE(fs::exists(path + ".replaced"));
  open(current);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);

  interface->path_answers = {current};  // over the survey that is open
  interface->yes_no_answers = {true};
  EXPECT_TRUE(create_chosen_survey());
  expect_open(current);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 0);
  EXPECT_EQ(interface.take_messages(), Messages{});
}

TEST_F(Survey_file_commands, New_in_a_missing_folder_says_nothing_and_leaves_what_is_open) {
  const std::string missing = folder.path("no_such_folder/new.mdb");
  interface->path_answers = {missing};
  EXPECT_FALSE(create_chosen_survey());
  expect_no_survey();
  const std::string current = survey_with_a_reading("current.mdb");
  EXPECT_TRUE(open(current));
  interface->path_answers = {missing};
  EXPECT_FALSE(create_chosen_survey());
  expect_open(current);
  EXPECT_EQ(interface.take_messages(), Messages{});
}

TEST_F(Survey_file_commands, A_new_name_gets_the_ending_of_surveys) {
  interface->path_answers = {folder.path("line5.v2"), folder.path("line5.v3")};
  EXPECT_TRUE(create_chosen_survey());
  expect_open(folder.path("line5.v2.mdb"));
  EXPECT_TRUE(save_survey_as());
  expect_open(folder.path("line5.v3.mdb"));
  EXPECT_FALSE(fs::exists(folder.path("line5.v2")));
}

TEST_F(Survey_file_commands, New_and_save_as_work_beside_logs_of_a_file_that_has_gone) {
  const auto write_logs = [&](const std::string& name) {
    for (const char* const ending : {"-wal", "-shm", "-journal"}) {
      (void)folder.write(name + ending, "left by a file that is no more");
    }
  };
  write_logs("new.mdb");
  interface->path_answers = {folder.path("new.mdb")};
  EXPECT_TRUE(create_chosen_survey());
  made::store(made::key(), 0, made::reading({{1.0F, 10.0F, 45.0F}}));
  write_logs("copy.mdb");
  interface->path_answers = {folder.path("copy.mdb")};
  EXPECT_TRUE(save_survey_as());
  expect_open(folder.path("copy.mdb"));
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
  (void)folder.write("text.mdb", "a letter home");
  write_logs("text.mdb");
  interface->path_answers = {folder.path("text.mdb")};
  interface->yes_no_answers = {true};
  EXPECT_TRUE(save_survey_as());
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
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
  expect_open(first);
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
  interface->path_answers = {other};
  interface->yes_no_answers = {false};
  EXPECT_FALSE(save_survey_as());
  expect_open(path);
  EXPECT_EQ(interface->file_dialogs.back().suggested_name, "other.mdb") << "the dialog came back";
  interface->path_answers = {other, other};
  interface->yes_no_answers = {false, true};
  EXPECT_TRUE(save_survey_as());
  expect_open(other);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
}

TEST_F(Survey_file_commands, A_save_as_that_fails_goes_on_with_the_survey_that_was_open) {
  const std::string path = survey_with_a_reading("line5.mdb");
  open(path);
  interface->path_answers.push_back(folder.path("no_such_folder/copy.mdb"));
  EXPECT_FALSE(save_survey_as());
  expect_open(path);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
  const Messages messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].find("An error occurred while creating the new database: "), 0U);
}

TEST_F(Survey_file_commands, Save_as_rescues_a_survey_that_was_removed_while_open) {
  const std::string path = survey_with_a_reading("line5.mdb");
  for (const bool logs_too : {true, false}) {
    for (const std::string& rescued : {folder.path("rescued.mdb"), path}) {
      SCOPED_TRACE(rescued);
      ASSERT_TRUE(open(path));
      made::store(made::key(), 1, made::reading({{1.0F, 10.0F, 45.0F}}));
      const std::int32_t rows = rows_in("ReadingsDataTable");
      fs::remove(path);
      if (logs_too) {
        fs::remove(path + "-wal");
        fs::remove(path + "-shm");
      }
      interface->path_answers = {rescued};
      interface->yes_no_answers = {true};
      EXPECT_TRUE(save_survey_as());
      expect_open(rescued);
      EXPECT_EQ(rows_in("ReadingsDataTable"), rows);
      made::store(made::key(), 2, made::reading({{1.0F, 10.0F, 45.0F}}));
      EXPECT_EQ(rows_in("ReadingsDataTable"), rows + 1);
      EXPECT_TRUE(close_survey());
      if (rescued != path) {
        fs::copy_file(rescued, path);
      }
    }
  }
  EXPECT_EQ(interface.take_messages(), Messages{});
}

TEST_F(Survey_file_commands, A_survey_in_a_read_only_folder_is_saved_from_its_copy) {
  fs::create_directory(folder.path("archive"));
  const std::string path = survey_with_a_reading("archive/line5.mdb");
  const std::string copy = folder.path("copy.mdb");
  const bool possible = run_in_own_mounts([&] {
    own_mounts::make_read_only(folder.path("archive"));
    ASSERT_TRUE(open(path));
    EXPECT_EQ(window_caption(), "BLX DATABASE " + path + " (read-only)");
    EXPECT_EQ(fs::current_path(), fs::canonical(folder.path("archive")));
    EXPECT_EQ(session().recent_files[0], path);
    const std::string private_copy = Module_database::working_file();
    EXPECT_NE(private_copy, path);
    interface->path_answers = {copy};
    EXPECT_TRUE(save_survey_as());
    expect_open(copy);
    EXPECT_FALSE(Module_database::survey_is_read_only());
    EXPECT_FALSE(fs::exists(fs::path(private_copy).parent_path()));
    EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
    made::store(made::key(), 2, made::reading({{1.0F, 10.0F, 45.0F}}));
    EXPECT_EQ(interface.take_messages(), Messages{});
    EXPECT_TRUE(close_survey());
  });
  if (!possible) {
    GTEST_SKIP() << "this system lets no process have mounts of its own";
  }
}

TEST_F(Survey_file_commands, A_survey_that_another_takes_the_place_of_needs_no_compaction_later) {
  const std::string first = survey_with_a_reading("first.mdb");
  const std::string second = survey_with_a_reading("second.mdb");
  if (file_mark(first).empty()) {
    GTEST_SKIP() << "the file system keeps no marks";
  }
  open(first);
  EXPECT_FALSE(Module_database::is_marked_compacted(first));
  open(second);
  expect_open(second);
  EXPECT_TRUE(Module_database::is_marked_compacted(first));
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
