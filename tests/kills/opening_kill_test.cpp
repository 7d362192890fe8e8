// A process that opens a survey is killed at each of its file operations; the survey must be at its path,
// sound and whole, and open again. The backup is the earlier one or the state before this opening, and once
// the survey was opened again nothing else lies about.
#include <chrono>
#include <filesystem>
#include <set>

#include "database/compacted_mark.h"
#include "database/stations.h"
#include "tests/kills/killed_process.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;

namespace {

constexpr int station_count = 300;

KilledProcess open_until(std::int64_t operation) {
  return run_until_operation(operation, [](const TellProgress&) { (void)open_database(); });
}

class OpeningKills : public SurveyTest {
 public:
  ~OpeningKills() override { let_files_be_cloned(false); }

 protected:
  /// Opens a survey and is killed at each operation in turn.
  /// @param compacted  whether the opening finds a survey that needs no compaction
  void kill_openings(bool compacted) {
    const std::string path = new_survey();
    for (int station = 0; station < station_count; ++station) {
      (void)find_station(StationSearch::create, "200E", 10.0 * station);
    }
    ASSERT_EQ(close_database(), 0);
    const auto make_ready = [&] {
      if (!compacted) {
        std::filesystem::last_write_time(path,
                                         std::filesystem::last_write_time(path) - std::chrono::seconds(1));
      }
    };
    if (compacted && !is_marked_compacted(path)) {
      GTEST_SKIP() << "the file system keeps no marks";
    }
    make_ready();
    const KilledProcess whole = open_until(0);
    ASSERT_FALSE(whole.killed);
    ASSERT_GT(whole.operations, compacted ? 3 : 30);
    // That process ended without closing: an opening in between makes the same of it as of all others.
    ASSERT_EQ(open_database(), 0);
    ASSERT_EQ(close_database(), 0);
    int backups_made = 0;
    for (std::int64_t operation = 1; operation <= whole.operations; ++operation) {
      SCOPED_TRACE(operation);
      ASSERT_TRUE(!compacted || is_marked_compacted(path));
      make_ready();
      const std::string before = file_contents(path);
      const std::string backup = folder.write("survey.bak", "the state of an earlier session");
      EXPECT_TRUE(open_until(operation).killed);
      ASSERT_TRUE(std::filesystem::exists(path));
      const bool backup_made = file_contents(backup) == before;
      backups_made += backup_made ? 1 : 0;
      EXPECT_TRUE(backup_made || file_contents(backup) == "the state of an earlier session");
      ASSERT_EQ(open_database(), 0);
      EXPECT_EQ(rows_in("StationsTable"), station_count);
      ASSERT_EQ(close_database(), 0);
      expect_sound_database(path);
      expect_sound_database(backup);
      EXPECT_EQ(names_in_folder(), (std::set<std::string>{"survey.bak", "survey.mdb"}));
    }
    EXPECT_GT(backups_made, 0);
    EXPECT_LT(backups_made, whole.operations / 2);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
  }

 private:
  std::set<std::string> names_in_folder() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.folder())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }
};

}  // namespace

TEST_F(OpeningKills, With_a_copy_leave_the_survey_at_its_path) { kill_openings(false); }

TEST_F(OpeningKills, With_a_copy_but_no_compaction_leave_the_survey_at_its_path) { kill_openings(true); }

TEST_F(OpeningKills, With_a_clone_leave_the_survey_at_its_path) {
  let_files_be_cloned(true);
  kill_openings(false);
}

TEST_F(OpeningKills, With_a_clone_but_no_compaction_leave_the_survey_at_its_path) {
  let_files_be_cloned(true);
  kill_openings(true);
}
