#include <csignal>
#include <fstream>
#include <string>
#include <tuple>

#include <sys/wait.h>
#include <unistd.h>

#include "database/schema.h"
#include "database/stations.h"
#include "platform/files/file_mark.h"
#include "platform/files/safe_files.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;
namespace fs = std::filesystem;

namespace {

const std::string opening_message = "An error occurred while opening the database: ";
const std::string locked_message = "database is locked. The survey is open in another window or program: ";
const std::string form_message = "This database does not have the required form";

bool starts_with(const std::string& text, const std::string& beginning) {
  return text.rfind(beginning, 0) == 0;
}

void add_station(const std::string& line, double station) {
  (void)find_station(StationSearch::create, line, station);
}

}  // namespace

TEST(Backup_path, Ends_at_the_first_mdb_in_any_case) {
  const std::pair<const char*, const char*> cases[] = {{"/s/line5.mdb", "/s/line5.bak"},
                                                       {"/s/Line5.MDB", "/s/Line5.bak"},
                                                       {"/my.mdbs/line5.mdb", "/my.bak"},
                                                       {"/s/line5.dat", "bak"}};
  for (const auto& [path, backup] : cases) {
    EXPECT_EQ(backup_path(path), backup);
  }
}

TEST_F(SurveyTest, Opening_keeps_the_state_before_the_session_as_backup) {
  const fs::path started_in = fs::current_path();
  const std::string path = new_survey();
  EXPECT_EQ(fs::current_path(), started_in) << "only the program's window moves to a survey's folder";
  add_station("200E", 100.0);
  reopen();
  add_station("200E", 200.0);
  EXPECT_EQ(rows_in("StationsTable"), 2);
  EXPECT_EQ(close_database(), 0);

  session().database_file = folder.path("earlier.mdb");
  fs::copy_file(folder.path("survey.bak"), session().database_file);
  ASSERT_EQ(open_database(), 0);
  EXPECT_EQ(rows_in("StationsTable"), 1);
  EXPECT_EQ(close_database(), 0);
  EXPECT_FALSE(fs::exists(path + ".compacting"));
  EXPECT_FALSE(fs::exists(path + "-wal"));
}

TEST_F(SurveyTest, A_file_needs_six_of_the_seven_tables) {
  struct Case {
    std::vector<std::string> missing;
    bool opens;
    std::size_t told;
  };
  const Case cases[] = {{{}, true, 0},
                        {{"LocationLookupTable"}, true, 0},
                        {{"Projection Defintion Table"}, true, 0},
                        {{"ReadingsFrequencyTable", "FileTable"}, true, 2},
                        {{"LocationLookupTable", "MaskDefinitionTable"}, false, 1}};
  int number = 0;
  for (const Case& c : cases) {
    session().database_file = folder.path("survey" + std::to_string(++number) + ".mdb");
    SCOPED_TRACE(session().database_file);
    ASSERT_EQ(create_database(), 0);
    {
      dao::Database database = dao::Database::open(session().database_file);
      for (const std::string& table : c.missing) {
        database.execute("DROP TABLE [" + table + "]");
      }
    }
    EXPECT_EQ(open_database(), c.opens ? 0 : -1);
    EXPECT_EQ(session().database_open, c.opens);
    const std::vector<std::string> messages = interface.take_messages();
    EXPECT_EQ(messages.size(), c.told);
    if (c.opens) {
      EXPECT_EQ(open_survey().database.table_names().size(), 10U);
      EXPECT_EQ(close_database(), 0);
    } else {
      EXPECT_EQ(messages, std::vector<std::string>{form_message});
    }
    EXPECT_TRUE(fs::exists(backup_path(session().database_file)));
  }
}

TEST_F(SurveyTest, Readings_of_the_oldest_files_get_their_component_names) {
  new_survey();
  dao::Recordset& readings = open_survey().readings;
  for (const char* type : {"Ex", "Ey", "ExHx"}) {
    readings.add_new();
    readings.set_text("DataType", type);
    readings.update();
  }
  reopen();
  std::vector<std::string> types;
  for (open_survey().readings.move_first(); !open_survey().readings.eof();
       open_survey().readings.move_next()) {
    types.push_back(open_survey().readings.get_text("DataType"));
  }
  EXPECT_EQ(types, (std::vector<std::string>{"ExHy", "EyHx", "ExHx"}));
}

TEST_F(SurveyTest, A_file_that_is_no_database_is_refused_and_left_alone) {
  std::string survey_bytes;
  {
    const std::string path = new_survey("whole.mdb");
    for (int station = 0; station < 400; ++station) {
      add_station("200E", station);
    }
    ASSERT_EQ(close_database(), 0);
    survey_bytes = file_contents(path);
  }
  std::string damaged = survey_bytes;
  damaged.replace(4096, 4096, std::string(4096, '\x5a'));
  const std::pair<const char*, std::string> cases[] = {
      {"empty", ""},
      {"text", "line,station\n200E,100\n"},
      {"binary", std::string(5000, '\xff')},
      {"truncated", survey_bytes.substr(0, survey_bytes.size() / 2)},
      {"damaged page", damaged},
  };
  int number = 0;
  for (const auto& [name, contents] : cases) {
    SCOPED_TRACE(name);
    const std::string stem = "bad" + std::to_string(++number);
    const std::string path = folder.write(stem + ".mdb", contents);
    const std::string backup = folder.write(stem + ".bak", "the state of an earlier session");
    session().database_file = path;
    EXPECT_EQ(open_database(), -1);
    EXPECT_FALSE(session().database_open);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(starts_with(messages[0], opening_message) && messages[0].size() > opening_message.size())
        << messages[0];
    EXPECT_TRUE(file_contents(path) == contents);
    EXPECT_EQ(file_contents(backup), "the state of an earlier session");
    EXPECT_FALSE(fs::exists(path + ".compacting"));
    EXPECT_FALSE(interface->busy);
  }
}

TEST_F(SurveyTest, A_survey_that_is_compact_and_unchanged_is_taken_as_it_is) {
  const std::string path = new_survey();
  if (set_file_mark(path, "kept"); file_mark(path) != "kept") {
    GTEST_SKIP() << "the file system keeps no marks";
  }
  const std::string other_name = folder.path("other_name");
  const auto opening_replaces_the_file = [&] {
    fs::remove(other_name);
    fs::create_hard_link(path, other_name);
    EXPECT_EQ(open_database(), 0);
    const bool replaced = !fs::equivalent(path, other_name);
    EXPECT_EQ(close_database(), 0);
    return replaced;
  };
  add_station("200E", 100.0);
  ASSERT_EQ(close_database(), 0);
  const std::string before = file_contents(path);
  EXPECT_FALSE(opening_replaces_the_file());
  EXPECT_TRUE(file_contents(folder.path("survey.bak")) == before);
  EXPECT_FALSE(opening_replaces_the_file());

  {
    dao::Database by_another_program = dao::Database::open(path);
    by_another_program.execute("UPDATE StationsTable SET Elevation = 1");
  }
  EXPECT_TRUE(opening_replaces_the_file());
  EXPECT_FALSE(opening_replaces_the_file());

  fs::copy_file(path, folder.path("copy.mdb"));
  fs::rename(folder.path("copy.mdb"), path);
  EXPECT_TRUE(opening_replaces_the_file()) << "nobody knows what was done to a copy";

  session().database_file = path;
  ASSERT_EQ(open_database(), 0);
  for (int station = 0; station < 1000; ++station) {
    add_station("400E", station);
  }
  open_survey().database.execute("DELETE FROM StationsTable WHERE SurveyLine = '400E'");
  ASSERT_EQ(close_database(), 0);
  EXPECT_TRUE(opening_replaces_the_file()) << "there is room to be gained";
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
}

TEST_F(SurveyTest, A_compact_survey_that_the_disk_has_damaged_does_not_become_the_backup) {
  const std::string path = new_survey();
  for (int station = 0; station < 2000; ++station) {
    add_station("200E", station);
  }
  ASSERT_EQ(close_database(), 0);
  reopen();
  ASSERT_EQ(close_database(), 0);
  if (file_mark(path).empty()) {
    GTEST_SKIP() << "the file system keeps no marks";
  }
  const std::string backup = file_contents(folder.path("survey.bak"));
  const auto written = fs::last_write_time(path);
  {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    const std::string damage(4096, '\x55');
    file.seekp(static_cast<std::streamoff>(fs::file_size(path) / 2 / 4096 * 4096));
    file.write(damage.data(), static_cast<std::streamsize>(damage.size()));
  }
  fs::last_write_time(path, written);
  EXPECT_EQ(open_database(), -1);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(starts_with(messages.front(), opening_message + "database disk image is malformed"))
      << messages.front();
  EXPECT_TRUE(file_contents(folder.path("survey.bak")) == backup);
}

TEST_F(SurveyTest, Opening_can_be_stopped_and_leaves_survey_and_backup_as_they_were) {
  const std::string path = new_survey();
  for (int station = 0; station < 400; ++station) {
    add_station("200E", station);
  }
  ASSERT_EQ(close_database(), 0);
  fs::copy_file(path, folder.path("again.mdb"));  // a copy is compacted
  session().database_file = folder.path("again.mdb");
  const std::string before = file_contents(session().database_file);
  const std::string backup = folder.write("again.bak", "the state of an earlier session");
  for (int looks = 0;; ++looks) {
    SCOPED_TRACE(looks);
    int looked = 0;
    interface->stop = [&] { return ++looked > looks; };
    if (open_database() == 0) {
      break;
    }
    EXPECT_EQ(interface.take_messages(),
              std::vector<std::string>{"The opening was stopped. The survey is as it was."});
    EXPECT_TRUE(file_contents(session().database_file) == before);
    EXPECT_EQ(file_contents(backup), "the state of an earlier session");
    EXPECT_FALSE(fs::exists(folder.path("again.mdb.compacting")));
    EXPECT_FALSE(fs::exists(folder.path("again.bak.writing")));
    EXPECT_EQ(interface->progress.back(), -1);
    ASSERT_LT(looks, 1000);
  }
  EXPECT_FALSE(interface->progress_texts.empty());
}

TEST_F(SurveyTest, A_missing_file_or_a_folder_is_an_opening_error) {
  for (const std::string& path : {folder.path("missing.mdb"), folder.folder().string()}) {
    session().database_file = path;
    EXPECT_EQ(open_database(), -1);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(starts_with(messages[0], opening_message)) << messages[0];
    EXPECT_EQ(messages[0].find("filesystem error"), std::string::npos) << messages[0];
  }
  EXPECT_FALSE(fs::exists(folder.path("missing.mdb")));
}

TEST_F(SurveyTest, A_link_to_a_survey_leaves_the_survey_where_it_is) {
  new_survey("real.mdb");
  add_station("200E", 100.0);
  ASSERT_EQ(close_database(), 0);
  fs::create_symlink(folder.path("real.mdb"), folder.path("link.mdb"));
  session().database_file = folder.path("link.mdb");
  ASSERT_EQ(open_database(), 0);
  add_station("200E", 200.0);
  ASSERT_EQ(close_database(), 0);
  EXPECT_TRUE(fs::is_symlink(folder.path("link.mdb")));
  session().database_file = folder.path("real.mdb");
  ASSERT_EQ(open_database(), 0);
  EXPECT_EQ(rows_in("StationsTable"), 2);
}

TEST_F(SurveyTest, A_genuine_jet_survey_is_converted_and_its_file_kept_for_good) {
  const fs::path source = fs::path(BRENLOX_FIELD_DATA) / "legacy_jet";
  if (!fs::exists(source)) {
    GTEST_SKIP() << "the field data is not beside the checkout";
  }
  enum class Outcome { opens, other_form, unreadable };
  const std::tuple<const char*, Outcome, std::int32_t> cases[] = {
      {"survey_jet4.mdb", Outcome::opens, 10},      {"survey_old_generation.mdb", Outcome::opens, -1},
      {"six_tables.mdb", Outcome::opens, -1},       {"five_tables.mdb", Outcome::other_form, 0},
      {"not_a_survey.mdb", Outcome::other_form, 0}, {"truncated.mdb", Outcome::unreadable, 0},
      {"bitflips.mdb", Outcome::unreadable, 0}};
  for (const auto& [name, outcome, stations] : cases) {
    SCOPED_TRACE(name);
    const std::string jet_bytes = file_contents((source / name).string());
    const std::string path = folder.write(name, jet_bytes);
    session().database_file = path;
    EXPECT_EQ(open_database(), outcome == Outcome::opens ? 0 : -1);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    const fs::path kept = folder.folder() / (fs::path(name).stem().string() + "_jet.mdb");
    EXPECT_EQ(fs::exists(kept), outcome == Outcome::opens);
    if (outcome != Outcome::opens) {
      EXPECT_TRUE(outcome == Outcome::other_form ? messages[0] == form_message
                                                 : starts_with(messages[0], opening_message))
          << messages[0];
      EXPECT_TRUE(file_contents(path) == jet_bytes);
      continue;
    }
    EXPECT_NE(messages[0].find(kept.string()), std::string::npos) << messages[0];
    EXPECT_TRUE(file_contents(kept.string()) == jet_bytes);
    EXPECT_TRUE(file_contents(backup_path(path)) == jet_bytes);
    if (stations >= 0) {
      EXPECT_EQ(rows_in("StationsTable"), stations);
    }
    reopen();
    EXPECT_TRUE(interface.take_messages().empty());
    EXPECT_TRUE(file_contents(kept.string()) == jet_bytes);
    EXPECT_EQ(close_database(), 0);
  }
}

TEST_F(SurveyTest, A_path_is_kept_without_the_way_that_led_there) {
  const std::string path = new_survey();
  ASSERT_EQ(close_database(), 0);
  fs::create_directories(folder.path("a/b"));
  fs::create_directory_symlink(folder.path("a/b"), folder.path("link"));
  for (const char* const way : {"a/../survey.mdb", "./survey.mdb", "link/../../survey.mdb"}) {
    SCOPED_TRACE(way);
    session().database_file = folder.path(way);
    ASSERT_EQ(open_database(), 0);
    EXPECT_EQ(session().database_file, path);
    EXPECT_EQ(close_database(), 0);
  }
}

TEST_F(SurveyTest, A_survey_open_in_another_process_is_refused) {
  const std::string path = new_survey();
  add_station("200E", 100.0);
  ASSERT_EQ(close_database(), 0);

  int opened[2];
  ASSERT_EQ(pipe(opened), 0);
  const pid_t child = fork();
  if (child == 0) {
    const char answer = open_database() == 0 ? 'y' : 'n';
    (void)!write(opened[1], &answer, 1);
    pause();
    _exit(0);
  }
  char answer = 0;
  ASSERT_EQ(read(opened[0], &answer, 1), 1);
  ASSERT_EQ(answer, 'y');
  const std::string before = file_contents(path);
  EXPECT_EQ(open_database(), -1);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(starts_with(messages[0], opening_message + locked_message)) << messages[0];
  EXPECT_NE(messages[0].find(", process " + std::to_string(child) + " of "), std::string::npos)
      << messages[0];
  EXPECT_TRUE(file_contents(path) == before);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(opened[0]);
  close(opened[1]);
  EXPECT_EQ(open_database(), 0);
  EXPECT_EQ(rows_in("StationsTable"), 1);
}
