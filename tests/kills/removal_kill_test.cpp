// A process that takes stations, files or a line out of a survey, or puts them back, is killed at many of its
// file operations; the survey must open again, be sound, and hold all of them or none, with averages and
// merged curves to match. Then the same can be done again.
#include <algorithm>
#include <filesystem>

#include "tests/kills/killed_process.h"
#include "tests/survey_edits/edited_survey.h"

using namespace Module_survey_edits;
namespace fs = std::filesystem;

namespace {

void choose_crossing(const SurveyContents& contents, Choice& choice) {
  const auto stations = stations_named(contents, "200E", 300);
  choice.stations.insert(stations.begin(), stations.end());
}

void choose_files(const SurveyContents& /*contents*/, Choice& choice) { choice.files = {0, 2}; }

void choose_line(const SurveyContents& contents, Choice& choice) { choice.add_line(contents, 0); }

class RemovalKills : public EditedSurvey {
 protected:
  enum class Work { open, remove, remove_and_undo };

  static KilledProcess work_until(std::int64_t operation, Work work, const std::string& survey,
                                  Choose choose) {
    return run_until_operation(operation, [&](const TellProgress&) {
      session().database_file = survey;
      if (Module_database::open_database() != 0 || work == Work::open) {
        return;
      }
      (void)remove(choose);
      if (work == Work::remove_and_undo) {
        (void)undo();
      }
      (void)Module_database::close_database();
    });
  }

  /// Under a name of its own, as a killed process leaves a log beside its file.
  std::string copy_of(const std::string& survey) {
    std::string copy = folder.path("copy_" + std::to_string(++copies_) + ".mdb");
    fs::copy_file(survey, copy);
    return copy;
  }

  std::vector<std::string> everything_in(const std::string& survey) {
    session().database_file = survey;
    EXPECT_EQ(Module_database::open_database(), 0);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
    std::vector<std::string> rows = everything();
    EXPECT_EQ(Module_database::close_database(), 0);
    return rows;
  }

 private:
  int copies_ = 0;
};

}  // namespace

TEST_F(RemovalKills, Leave_all_that_was_chosen_or_nothing_of_it) {
  constexpr std::int64_t kills = 12;  // of each work
  const std::string survey = new_survey();
  import_all(lines());
  ASSERT_EQ(Module_database::close_database(), 0);
  const std::vector<std::string> whole = everything_in(copy_of(survey));
  const struct {
    const char* what;
    Choose choose;
    Work work;
  } cases[] = {{"a station", choose_crossing, Work::remove},
               {"files", choose_files, Work::remove},
               {"a line", choose_line, Work::remove},
               {"a line and back", choose_line, Work::remove_and_undo}};
  const std::int64_t opening = work_until(0, Work::open, copy_of(survey), nullptr).operations;
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    const std::string removed_from = copy_of(survey);
    ASSERT_FALSE(work_until(0, Work::remove, removed_from, each.choose).killed);
    const std::vector<std::string> rest = everything_in(removed_from);
    ASSERT_LT(rest.size(), whole.size());

    const std::int64_t last = work_until(0, each.work, copy_of(survey), each.choose).operations;
    ASSERT_GT(last, opening + kills);
    int found_whole = 0;
    for (std::int64_t kill = 1; kill <= kills; ++kill) {
      SCOPED_TRACE(kill);
      const std::string copy = copy_of(survey);
      EXPECT_TRUE(work_until(opening + kill * (last - opening) / kills, each.work, copy, each.choose).killed);
      const std::vector<std::string> found = everything_in(copy);
      expect_sound_database(copy);
      found_whole += found == whole ? 1 : 0;
      EXPECT_TRUE(found == whole || found == rest) << difference(found, whole);
      if (found == whole) {
        EXPECT_FALSE(work_until(0, Work::remove, copy, each.choose).killed);
        EXPECT_EQ(difference(everything_in(copy), rest), "");
      }
    }
    EXPECT_GT(found_whole, 0);
    EXPECT_LT(found_whole, kills);
  }
}
