// A process that opens a survey is killed at each of its file operations; the survey must be at its path,
// sound and whole, and open again.
#include <chrono>
#include <filesystem>

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

class OpeningKillTest : public SurveyTest {
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
    for (std::int64_t operation = 1; operation <= whole.operations; ++operation) {
      SCOPED_TRACE(operation);
      ASSERT_TRUE(!compacted || is_marked_compacted(path));
      make_ready();
      EXPECT_TRUE(open_until(operation).killed);
      ASSERT_TRUE(std::filesystem::exists(path));
      ASSERT_EQ(open_database(), 0);
      EXPECT_EQ(rows_in("StationsTable"), station_count);
      ASSERT_EQ(close_database(), 0);
      expect_sound_database(path);
    }
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
  }
};

}  // namespace

TEST_F(OpeningKillTest, A_kill_at_any_moment_of_opening_leaves_the_survey_at_its_path) {
  kill_openings(false);
}

TEST_F(OpeningKillTest, A_kill_at_any_moment_of_opening_without_compaction_leaves_it_there) {
  kill_openings(true);
}
