#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <tuple>

#include <sys/wait.h>
#include <unistd.h>

#include "database/opening_progress.h"
#include "database/schema.h"
#include "database/stations.h"
#include "platform/files/file_mark.h"
#include "platform/files/safe_files.h"
#include "tests/support/child_process.h"
#include "tests/support/foreign_change.h"
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

/// That the file system gave a file; another one that takes its place has another.
std::string file_number(const std::string& path) {
  const std::string state = file_state(path);
  return state.substr(state.rfind(' ') + 1);
}

/// What opening keeps, and nothing that one has left.
void expect_only_survey_and_backup(const fs::path& folder) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  EXPECT_EQ(names, (std::set<std::string>{"survey.bak", "survey.mdb"}));
}

void add_station(const std::string& line, double station) {
  (void)find_station(StationSearch::create, line, station);
}

/// While the backup is made, another program does something with the survey.
class OpeningMetByAnother : public SurveyTest {
 protected:
  static constexpr std::int32_t stations = 400;
  const std::string earlier_backup = "the state of an earlier session";

  /// @param compact  whether the opening finds a survey that needs no compaction
  void make_survey(bool compact) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder.folder())) {
      fs::remove(entry.path());
    }
    path = new_survey();
    for (std::int32_t station = 0; station < stations; ++station) {
      add_station("200E", station);
    }
    ASSERT_EQ(close_database(), 0);
    if (!compact) {
      fs::last_write_time(path, fs::last_write_time(path) - std::chrono::seconds(1));
    }
    before = file_contents(path);
    backup = folder.write("survey.bak", earlier_backup);
  }

  void while_backup_is_made(const std::function<void()>& what) {
    interface->stop = [this, what, done = false]() mutable {
      if (!done && interface->progress_texts.back().ends_with("keeping the earlier state")) {
        done = true;
        what();
      }
      return false;
    };
  }

  static std::int32_t stations_at_elevation_7() {
    return open_survey()
        .database.open_recordset("SELECT * FROM StationsTable WHERE Elevation = 7")
        .record_count();
  }

  std::string path;
  std::string before;
  std::string backup;
};

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

TEST_F(SurveyTest, A_file_of_another_form_costs_no_survey_its_backup) {
  const std::string path = folder.path("survey.mdb");
  dao::Database::create(path, "").execute("CREATE TABLE Notes (ID COUNTER)");
  const std::string before = file_contents(path);
  const std::string backup = folder.write("survey.bak", "the survey that was here");
  session().database_file = path;
  EXPECT_EQ(open_database(), -1);
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{form_message});
  EXPECT_TRUE(file_contents(path) == before);
  EXPECT_EQ(file_contents(backup), "the survey that was here");
  expect_only_survey_and_backup(folder.folder());
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
  const auto opening_replaces_the_file = [&] {
    const std::string before = file_number(path);
    EXPECT_EQ(open_database(), 0);
    EXPECT_EQ(close_database(), 0);
    return file_number(path) != before;
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

// A copy of the file by hand lacks what is only in the log.
TEST_F(SurveyTest, Edits_reach_the_file_itself_once_the_survey_is_idle) {
  const std::string path = new_survey();
  const auto has_log = [&] { return fs::exists(path + "-wal") && fs::file_size(path + "-wal") > 0; };
  settle_survey();
  ASSERT_FALSE(has_log());
  for (const double station : {100.0, 200.0}) {
    add_station("200E", station);
    settle_idle_survey();
    EXPECT_TRUE(has_log()) << "there was an edit since the last look";
  }
  settle_idle_survey();
  EXPECT_FALSE(has_log());
}

TEST_F(SurveyTest, Opening_tells_its_steps_in_percent) {
  {
    const OpeningProgress progress(folder.path("survey.mdb"));
    progress.of_copy()(0.5);
    progress.of_compaction()("compacting", 1.0);
  }
  EXPECT_EQ(interface->progress, (std::vector<int>{50, 100, -1}));
  EXPECT_EQ(interface->progress_texts,
            (std::vector<std::string>{"Opening survey.mdb: keeping the earlier state",
                                      "Opening survey.mdb: compacting", ""}));
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

TEST_F(OpeningMetByAnother, Program_that_takes_the_survey_costs_it_no_backup) {
  for (const bool compact : {true, false}) {
    SCOPED_TRACE(compact);
    make_survey(compact);
    sqlite3* other = nullptr;
    while_backup_is_made([&] {
      EXPECT_EQ(sqlite3_open(path.c_str(), &other), SQLITE_OK);
      EXPECT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    });
    EXPECT_EQ(open_database(), -1);
    sqlite3_close(other);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(starts_with(messages[0], opening_message + "database is locked")) << messages[0];
    EXPECT_TRUE(file_contents(path) == before);
    EXPECT_EQ(file_contents(backup), earlier_backup);
    expect_only_survey_and_backup(folder.folder());
  }
}

TEST_F(OpeningMetByAnother, Program_that_writes_the_survey_gets_into_no_backup_by_half) {
  const std::string change = "UPDATE StationsTable SET Elevation = 7;";
  for (const bool compact : {true, false}) {
    SCOPED_TRACE(compact);
    make_survey(compact);
    while_backup_is_made([&] { EXPECT_TRUE(change_file(path, change)); });
    const int status = open_database();
    const std::vector<std::string> messages = interface.take_messages();
    if (compact) {  // goes on as for any survey that was written
      EXPECT_EQ(status, 0);
      EXPECT_EQ(messages, std::vector<std::string>{});
      ASSERT_EQ(close_database(), 0);
      fs::copy_file(backup, folder.path("opened.mdb"));
      session().database_file = folder.path("opened.mdb");
      ASSERT_EQ(open_database(), 0);
      EXPECT_EQ(stations_at_elevation_7(), stations);
      ASSERT_EQ(close_database(), 0);
    } else {
      EXPECT_EQ(status, -1);
      ASSERT_EQ(messages.size(), 1U);
      EXPECT_TRUE(starts_with(messages[0], opening_message + "another program has written the survey"))
          << messages[0];
      EXPECT_EQ(file_contents(backup), earlier_backup);
      expect_only_survey_and_backup(folder.folder());
    }
    session().database_file = path;
    ASSERT_EQ(open_database(), 0);
    EXPECT_EQ(stations_at_elevation_7(), stations) << "what the other program wrote is there";
    ASSERT_EQ(close_database(), 0);
  }
}

TEST_F(OpeningMetByAnother, Program_that_writes_a_log_is_named_as_the_reason) {
  for (const bool compact : {true, false}) {
    SCOPED_TRACE(compact);
    make_survey(compact);
    sqlite3* other = nullptr;
    while_backup_is_made([&] {
      EXPECT_EQ(sqlite3_open(path.c_str(), &other), SQLITE_OK);
      EXPECT_EQ(sqlite3_exec(other, "PRAGMA journal_mode = WAL; UPDATE StationsTable SET Elevation = 7",
                             nullptr, nullptr, nullptr),
                SQLITE_OK);
    });
    EXPECT_EQ(open_database(), -1);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(
        starts_with(messages[0], opening_message + (compact ? "database is locked" : "another program")))
        << messages[0];
    EXPECT_EQ(file_contents(backup), earlier_backup);
    sqlite3_close(other);
    expect_only_survey_and_backup(folder.folder());
    ASSERT_EQ(open_database(), 0);
    EXPECT_EQ(stations_at_elevation_7(), stations);
    ASSERT_EQ(close_database(), 0);
  }
}

TEST_F(SurveyTest, A_survey_with_two_names_gets_a_file_of_its_own) {
  const std::string path = new_survey();
  add_station("200E", 100.0);
  ASSERT_EQ(close_database(), 0);
  const std::string snapshot = folder.path("snapshot.mdb");
  fs::create_hard_link(path, snapshot);
  const std::string before = file_contents(snapshot);
  ASSERT_EQ(open_database(), 0);
  EXPECT_EQ(interface.take_messages(),
            std::vector<std::string>{
                "This survey's file had another name as well (a hard link): " + snapshot +
                ". That one stays as it was; " + path + " has a file of its own from now on."});
  add_station("200E", 200.0);
  reopen();
  EXPECT_EQ(rows_in("StationsTable"), 2);
  ASSERT_EQ(close_database(), 0);
  EXPECT_TRUE(file_contents(snapshot) == before);
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
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

/// Opens a survey in another process, which adds a station and then waits or dies.
pid_t start_session(const std::string& path, double station, bool dies) {
  int opened[2];
  EXPECT_EQ(pipe(opened), 0);
  const pid_t child = start_child([&] {
    session().database_file = path;
    EXPECT_EQ(open_database(), 0);
    add_station("200E", station);
    if (dies) {
      raise(SIGKILL);
    }
    (void)!write(opened[1], "y", 1);
    pause();
  });
  close(opened[1]);
  char answer = 0;
  EXPECT_EQ(read(opened[0], &answer, 1), dies ? 0 : 1);
  close(opened[0]);
  return child;
}

TEST_F(SurveyTest, A_survey_open_in_another_process_is_refused) {
  const std::string path = new_survey();
  add_station("200E", 100.0);
  ASSERT_EQ(close_database(), 0);

  const pid_t child = start_session(path, 200.0, false);
  const std::string before = file_contents(path);
  EXPECT_EQ(open_database(), -1);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(starts_with(messages[0], opening_message + locked_message)) << messages[0];
  EXPECT_NE(messages[0].find(", process " + std::to_string(child) + " of "), std::string::npos)
      << messages[0];
  EXPECT_TRUE(file_contents(path) == before);
  kill(child, SIGKILL);
  EXPECT_EQ(wait_for_child(child), -1);
  EXPECT_EQ(open_database(), 0);
  EXPECT_EQ(rows_in("StationsTable"), 2);
}

TEST_F(SurveyTest, Rows_in_the_log_of_another_name_are_not_passed_by) {
  const std::string path = new_survey();
  add_station("200E", 100.0);
  ASSERT_EQ(close_database(), 0);
  const std::string other = folder.path("other.mdb");
  for (const bool dies : {false, true}) {
    SCOPED_TRACE(dies);
    const pid_t child = start_session(path, dies ? 300.0 : 200.0, dies);
    fs::create_hard_link(path, other);
    for (const OpenFor purpose : {OpenFor::editing, OpenFor::reading}) {
      session().database_file = other;
      EXPECT_EQ(open_database(purpose), -1);
      const std::vector<std::string> messages = interface.take_messages();
      ASSERT_EQ(messages.size(), 1U);
      std::string reason = opening_message;
      if (dies) {
        reason.append("the file has another name as well (a hard link): ").append(path);
      } else {
        reason += locked_message;
      }
      EXPECT_TRUE(starts_with(messages[0], reason)) << messages[0];
    }
    for (const char* const ending : {"-wal", "-shm", ".compacting", ".opening"}) {
      EXPECT_FALSE(fs::exists(other + ending)) << ending;
    }
    kill(child, SIGKILL);
    EXPECT_EQ(wait_for_child(child), -1);
    session().database_file = path;
    ASSERT_EQ(open_database(), 0);
    EXPECT_EQ(rows_in("StationsTable"), dies ? 3 : 2);
    ASSERT_EQ(close_database(), 0);
    EXPECT_EQ(interface.take_messages().size(), 1U);  // that it has a file of its own
    fs::remove(other);
  }
}
