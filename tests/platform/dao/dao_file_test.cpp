// The file itself: creating, opening, other processes, kills, compaction, damage.
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/dao/compact.h"
#include "platform/dao/database.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

std::string error_of(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const dao::Error& failure) {
    return failure.what();
  }
  return {};
}

void fill(dao::Database& database, int rows) {
  dao::Transaction transaction(database);
  dao::Recordset recordset = database.open_recordset("SELECT * FROM Readings");
  for (int i = 0; i < rows; ++i) {
    recordset.add_new();
    recordset.set_text("Line", "200W");
    recordset.set_binary("Data", dao::Bytes(5000, std::byte{7}));
    recordset.update();
  }
  transaction.commit();
}

dao::Database new_survey(const std::string& path, int rows) {
  dao::Database database = dao::Database::create(path, ";LANGID=0x0409;CP=1252;COUNTRY=0");
  database.execute("CREATE TABLE Readings (ID COUNTER,Line TEXT(8),Data LONGBINARY)");
  database.execute("CREATE UNIQUE INDEX ReadingsIndex ON Readings(ID) WITH PRIMARY");
  database.execute("CREATE INDEX OfLine ON Readings(Line)");
  fill(database, rows);
  return database;
}

int row_count(const std::string& path) {
  dao::Database database = dao::Database::open(path, dao::Access::read_only);
  return database.open_recordset("SELECT * FROM Readings").record_count();
}

void expect_alone(const std::string& path) {
  for (const char* ending : {"-wal", "-shm", "-journal"}) {
    EXPECT_FALSE(fs::exists(path + ending)) << ending;
  }
}

/// Another process that works on a file; it says when it is ready and ends by a kill.
class OtherProcess {
 public:
  explicit OtherProcess(const std::function<void()>& work) {
    int ends[2] = {};
    if (::pipe(ends) != 0) {
      throw std::runtime_error("no pipe");
    }
    process_ = ::fork();
    if (process_ == 0) {
      try {
        work();
      } catch (const std::exception&) {
        ::_exit(1);
      }
    }
    ::close(ends[process_ == 0 ? 0 : 1]);
    if (process_ == 0) {
      (void)!::write(ends[1], "r", 1);
      ::pause();
    }
    char ready = ' ';
    is_ready_ = ::read(ends[0], &ready, 1) == 1;
    ::close(ends[0]);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() { kill(); }

  [[nodiscard]] bool is_ready() const { return is_ready_; }
  void kill() {
    if (process_ > 0) {
      ::kill(process_, SIGKILL);
      ::waitpid(process_, nullptr, 0);
      process_ = 0;
    }
  }

 private:
  pid_t process_ = 0;
  bool is_ready_ = false;
};

class File : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
  std::string path_ = folder_.path("survey.mdb");
};

TEST_F(File, Is_made_once_and_stands_alone_when_closed) {
  (void)folder_.write("survey.mdb-wal", "left by an earlier file of that name");
  new_survey(path_, 3);
  expect_alone(path_);
  EXPECT_EQ(row_count(path_), 3);
  expect_alone(path_);
  EXPECT_EQ(error_of([&] { (void)dao::Database::create(path_, ""); }), "the file exists already");
  EXPECT_EQ(row_count(path_), 3);
  EXPECT_NE(error_of([&] { (void)dao::Database::create(folder_.path("none/survey.mdb"), ""); }), "");
  EXPECT_FALSE(fs::exists(folder_.path("none")));
}

TEST_F(File, That_is_no_survey_is_an_error_at_once) {
  new_survey(path_, 100);
  const std::string whole = file_contents(path_);
  struct Case {
    const char* name;
    std::string contents;
  };
  std::string header_only_mark = whole;
  header_only_mark.replace(16, 84, 84, '\xAA');
  const Case cases[] = {
      {"empty", ""},
      {"text", "a letter home, long enough for a header of a hundred bytes" + std::string(100, '.')},
      {"zeros", std::string(8192, '\0')},
      {"cut in its first page", whole.substr(0, 1000)},
      {"destroyed header", header_only_mark},
      {"jet", std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, '\0')}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = folder_.write("bad.mdb", c.contents);
    EXPECT_NE(error_of([&] { (void)dao::Database::open(path); }), "");
    EXPECT_NE(error_of([&] { dao::compact_database(path, folder_.path("fresh.mdb")); }), "");
    EXPECT_FALSE(fs::exists(folder_.path("fresh.mdb")));
    EXPECT_EQ(file_contents(path), c.contents);
  }
  EXPECT_EQ(error_of([&] { (void)dao::Database::open(folder_.path("missing.mdb")); }),
            "unable to open database file");
  EXPECT_EQ(error_of([&] { dao::recover_database(folder_.path("missing.mdb")); }),
            "unable to open database file");
  EXPECT_NE(error_of([&] { (void)dao::Database::open(folder_.folder().string()); }), "");
  EXPECT_FALSE(fs::exists(folder_.path("missing.mdb")));
}

TEST_F(File, Is_told_by_its_first_bytes) {
  new_survey(path_, 0);
  EXPECT_EQ(dao::file_kind(path_), dao::FileKind::survey_engine);
  EXPECT_EQ(dao::file_kind(folder_.write("jet", std::string("\0\1\0\0Standard Jet DB\0", 20))),
            dao::FileKind::genuine_jet);
  EXPECT_EQ(dao::file_kind(folder_.write("access", std::string("\0\1\0\0Standard ACE DB\0", 20))),
            dao::FileKind::unknown);
  EXPECT_EQ(dao::file_kind(folder_.path("missing")), dao::FileKind::unknown);
  EXPECT_EQ(dao::file_kind(folder_.folder().string()), dao::FileKind::unknown);
}

TEST_F(File, Opened_to_read_serves_beside_a_writer_and_refuses_to_write) {
  dao::Database writer = new_survey(path_, 2);
  dao::Database reader = dao::Database::open(path_, dao::Access::read_only);
  dao::Recordset rows = reader.open_recordset("SELECT * FROM Readings");
  const dao::Transaction transaction(writer);
  writer.execute("DELETE FROM Readings");
  EXPECT_EQ(rows.record_count(), 2);
  EXPECT_EQ(error_of([&] { reader.execute("DELETE FROM Readings"); }),
            "attempt to write a readonly database");
}

TEST_F(File, Held_by_another_process_is_neither_recovered_nor_written) {
  new_survey(path_, 2);
  OtherProcess idle([&] { static dao::Database held = dao::Database::open(path_); });
  ASSERT_TRUE(idle.is_ready());
  EXPECT_EQ(error_of([&] { dao::recover_database(path_); }), "database is locked");
  idle.kill();
  dao::recover_database(path_);

  OtherProcess writing([&] {
    static dao::Database held = dao::Database::open(path_);
    static const dao::Transaction transaction(held);
    held.execute("DELETE FROM Readings");
  });
  ASSERT_TRUE(writing.is_ready());
  EXPECT_EQ(row_count(path_), 2);
  dao::Database database = dao::Database::open(path_);
  EXPECT_EQ(error_of([&] { database.execute("DELETE FROM Readings"); }), "database is locked");
}

TEST_F(File, Of_a_killed_process_holds_what_was_committed) {
  new_survey(path_, 2);
  OtherProcess process([&] {
    static dao::Database killed = dao::Database::open(path_);
    fill(killed, 40);
    static const dao::Transaction transaction(killed);
    killed.execute("DELETE FROM Readings WHERE ID < 30");
  });
  ASSERT_TRUE(process.is_ready());
  process.kill();
  EXPECT_TRUE(fs::exists(path_ + "-wal"));
  dao::recover_database(path_);
  expect_alone(path_);
  fs::rename(path_, folder_.path("renamed.mdb"));
  EXPECT_EQ(row_count(folder_.path("renamed.mdb")), 42);
}

TEST_F(File, Compacted_keeps_its_rows_and_drops_the_free_space) {
  {
    dao::Database database = new_survey(path_, 200);
    database.execute("DELETE FROM Readings WHERE ID < 191");
  }
  const std::string before = file_contents(path_);
  const std::string fresh = folder_.path("fresh.mdb");
  (void)folder_.write("fresh.mdb-journal", "left by an earlier file of that name");
  dao::compact_database(path_, fresh);
  EXPECT_EQ(file_contents(path_), before);
  EXPECT_LT(fs::file_size(fresh), before.size() / 5);
  expect_alone(fresh);
  dao::Database database = dao::Database::open(fresh);
  dao::Recordset rows = database.open_recordset("SELECT * FROM Readings");
  EXPECT_EQ(rows.record_count(), 10);
  EXPECT_EQ(rows.get_long("ID"), 191);
  EXPECT_EQ(rows.get_binary("Data"), dao::Bytes(5000, std::byte{7}));
  database.close();
  EXPECT_EQ(error_of([&] { dao::compact_database(path_, fresh); }), "the file exists already");
  EXPECT_EQ(row_count(fresh), 10);
}

TEST_F(File, Runs_nothing_that_its_schema_holds) {
  new_survey(path_, 3);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(path_.c_str(), &other), SQLITE_OK);
  EXPECT_EQ(
      sqlite3_exec(other,
                   "CREATE TRIGGER Sweep AFTER DELETE ON Readings BEGIN DELETE FROM Readings; END;"
                   "CREATE TRIGGER Bar BEFORE INSERT ON Readings BEGIN SELECT RAISE(ABORT, 'barred'); END;"
                   "CREATE VIEW Lines AS SELECT Line FROM Readings;"
                   "CREATE TABLE Checked (Number LONG CHECK (Number > 5));",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  sqlite3_close(other);
  dao::Database database = dao::Database::open(path_);
  database.execute("DELETE FROM Readings WHERE ID = 1");
  fill(database, 1);
  EXPECT_EQ(row_count(path_), 3);
  database.execute("INSERT INTO Checked (Number) VALUES (1)");
  EXPECT_EQ(error_of([&] { (void)database.open_recordset("SELECT * FROM Lines"); }), "no such table: Lines");
  ASSERT_EQ(database.other_objects().size(), 3U);
  EXPECT_EQ(database.other_objects()[0].name, "Sweep");
  EXPECT_EQ(database.other_objects()[0].table, "Readings");
  database.drop_triggers_and_views();
  EXPECT_TRUE(database.other_objects().empty());
  EXPECT_EQ(row_count(path_), 3);
  database.close();
  dao::compact_database(path_, folder_.path("fresh.mdb"));
  EXPECT_EQ(row_count(folder_.path("fresh.mdb")), 3);
}

TEST_F(File, Removed_while_it_is_open_can_be_copied_from_there) {
  dao::Database database = new_survey(path_, 2);
  fill(database, 40);  // in the log
  for (const char* const ending : {"", "-wal", "-shm"}) {
    fs::remove(path_ + ending);
  }
  const std::string copy = folder_.path("rescued.mdb");
  EXPECT_NE(error_of([&] { database.copy_to(folder_.path("none/rescued.mdb")); }), "");
  database.copy_to(copy);
  expect_alone(copy);
  EXPECT_EQ(row_count(copy), 42);
  EXPECT_EQ(error_of([&] { database.copy_to(copy); }), "the file exists already");
  database.close();
  EXPECT_EQ(row_count(copy), 42);
}

TEST_F(File, Alone_holds_all_that_was_committed_once_its_log_is_settled) {
  const auto rows_of_hand_copy = [&](const char* name) {
    fs::copy_file(path_, folder_.path(name));
    return row_count(folder_.path(name));
  };
  dao::Database database = dao::Database(new_survey(path_, 2));
  database.settle_log();
  const std::int64_t before = database.change_count();
  fill(database, 5);
  EXPECT_EQ(database.change_count(), before + 5);
  EXPECT_EQ(rows_of_hand_copy("lacks.mdb"), 2);
  {
    const dao::Transaction transaction(database);
    EXPECT_FALSE(database.settle_log());  // not in the middle of something
  }
  EXPECT_EQ(rows_of_hand_copy("lacks_still.mdb"), 2);
  EXPECT_TRUE(database.settle_log());
  EXPECT_EQ(rows_of_hand_copy("whole.mdb"), 7);
}

TEST_F(File, Has_a_shelf_for_copies_of_rows_that_shares_its_transactions) {
  const std::string path = folder_.path("survey.mdb");
  dao::Database database = new_survey(path, 3);
  database.add_shelf(folder_.path("shelf"));
  {
    dao::Transaction transaction(database);
    database.shelve("Kept Readings", "Readings");
    database.execute("INSERT INTO [Kept Readings] SELECT * FROM Readings WHERE ID > 1");
    database.execute("DELETE FROM Readings WHERE ID IN (SELECT ID FROM [Kept Readings])");
    transaction.commit();
  }
  EXPECT_EQ(database.table_names(), std::vector<std::string>{"Readings"});
  EXPECT_EQ(row_count(path), 1);
  {
    const dao::Transaction given_up(database);
    database.shelve("Kept Readings", "Readings");
    EXPECT_TRUE(database.open_recordset("SELECT * FROM [Kept Readings]").eof());
  }
  database.execute("INSERT INTO Readings SELECT ID,Data FROM [Kept Readings] WHERE ID = 3");
  dao::Recordset back = database.open_recordset("SELECT * FROM Readings WHERE ID = 3");
  EXPECT_TRUE(back.is_null("Line"));
  EXPECT_EQ(back.get_binary("Data"), dao::Bytes(5000, std::byte{7}));

  EXPECT_NE(error_of([&] { database.shelve("readings", "Readings"); }), "");
  for (const char* const statement : {"INSERT INTO Readings SELECT Nothing FROM [Kept Readings]",
                                      "INSERT INTO Readings SELECT * FROM Nowhere",
                                      "INSERT INTO Readings SELECT * FROM [Kept Readings] ORDER BY ID"}) {
    EXPECT_NE(error_of([&] { database.execute(statement); }), "") << statement;
  }
  database.close();
  expect_alone(path);
  dao::Database again = dao::Database::open(path);
  EXPECT_NE(error_of([&] { again.execute("DELETE FROM [Kept Readings]"); }), "");
}

TEST_F(File, May_be_put_where_stale_logs_are) {
  const auto write_logs = [&] {
    for (const char* const ending : {"-wal", "-shm", "-journal"}) {
      (void)folder_.write(std::string("survey.mdb") + ending, "left by an earlier file of that name");
    }
  };
  write_logs();
  dao::clear_place(path_);
  expect_alone(path_);
  (void)folder_.write("survey.mdb", "a letter home");
  write_logs();
  dao::clear_place(path_);
  expect_alone(path_);
  EXPECT_EQ(file_contents(path_), "a letter home");
  fs::remove(path_);
  OtherProcess process([&] { static dao::Database held = new_survey(path_, 2); });
  ASSERT_TRUE(process.is_ready());
  EXPECT_EQ(error_of([&] { dao::clear_place(path_); }), "database is locked");
  process.kill();
  dao::clear_place(path_);
  expect_alone(path_);
  EXPECT_EQ(row_count(path_), 2);
}

TEST_F(File, That_is_damaged_is_not_compacted) {
  new_survey(path_, 200);
  const std::string whole = file_contents(path_);
  const std::string fresh = folder_.path("fresh.mdb");
  constexpr std::size_t page = 4096;
  struct Case {
    const char* name;
    std::string contents;
  };
  std::string pages_of_zeros = whole;
  pages_of_zeros.replace(10 * page, 20 * page, 20 * page, '\0');
  std::string noise = whole;
  noise.replace(page, page, page, '\x5A');
  const Case cases[] = {{"half", whole.substr(0, whole.size() / 2)},
                        {"last page cut off", whole.substr(0, whole.size() - page)},
                        {"cut in a page", whole.substr(0, 50 * page + 7)},
                        {"pages of zeros", pages_of_zeros},
                        {"a page of noise", noise}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = folder_.write("bad.mdb", c.contents);
    EXPECT_NE(error_of([&] { dao::compact_database(path, fresh); }).find("malformed"), std::string::npos);
    EXPECT_FALSE(fs::exists(fresh));
    expect_alone(fresh);
    EXPECT_EQ(file_contents(path), c.contents);
  }
}

}  // namespace
