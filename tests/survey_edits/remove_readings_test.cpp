#include "core/undo_stack.h"
#include "tests/survey_edits/edited_survey.h"

using namespace Module_survey_edits;
using Module_averaged_data::Outcome;

namespace {

void choose_b(const SurveyContents& contents, Choice& choice) {
  const auto files = files_named(contents, "B.EDI");
  choice.files.insert(files.begin(), files.end());
}

void choose_300E(const SurveyContents& contents, Choice& choice) {
  const auto stations = stations_named(contents, "200e", 300);
  choice.stations.insert(stations.begin(), stations.end());
}

void choose_fast_station(const SurveyContents& contents, Choice& choice) {
  const auto files = files_named(contents, "fast.edi");
  choice.files.insert(files.begin(), files.end());
}

void choose_line_200(const SurveyContents& contents, Choice& choice) {
  choice.add_line(contents, lines_named(contents, "200e").at(0));
}

void choose_all(const SurveyContents& contents, Choice& choice) {
  for (std::size_t line = 0; line < contents.lines.size(); ++line) {
    choice.add_line(contents, line);
  }
}

}  // namespace

TEST_F(EditedSurvey, Contents_tell_what_belongs_to_files_stations_and_lines) {
  new_survey();
  import_all(lines());
  Module_database::find_station(Module_database::StationSearch::create, "900E", 50);
  const SurveyContents contents = survey_contents();
  ASSERT_EQ(contents.files.size(), 5U);
  EXPECT_EQ(contents.files[0].name, "a.edi");
  EXPECT_EQ(contents.files[0].readings, 8U);  // of four components at two stations
  EXPECT_EQ(contents.files[0].stations.size(), 2U);
  const HeldStation& station = contents.stations.at(stations_named(contents, "200e", 100).at(0));
  EXPECT_EQ(station.readings, 12U);
  EXPECT_EQ(station.files, 3U);
  EXPECT_EQ(station.name, "site 100");
  EXPECT_FALSE(station.is_ghost());
  const HeldLine& ghosts = contents.lines.at(lines_named(contents, "900e").at(0));
  EXPECT_TRUE(contents.stations[ghosts.stations.at(0)].is_ghost());

  Choice choice;
  choose_b(contents, choice);
  EXPECT_EQ(summary(plan_removal(contents, choice)),
            "1 file and 8 readings go; 8 averages are computed again.");
  choose_300E(contents, choice);
  choice.add_ghosts(contents);
  EXPECT_EQ(summary(plan_removal(contents, choice)),
            "2 files, 16 readings, 2 stations and 1 line go; 4 averages are computed again.");
  EXPECT_EQ(summary(plan_removal(contents, {})), "Nothing is chosen.");
}

TEST_F(EditedSurvey, What_remains_is_what_an_import_of_it_gives) {
  struct Case {
    const char* what;
    Choose choose;
    std::vector<std::string> files_left;
  };
  const std::vector<Case> cases{
      {"a repeat", choose_b, {"a.edi", "fast.edi", "cross.edi", "c.edi"}},
      {"a scan rate", choose_fast_station, {"a.edi", "b.edi", "cross.edi", "c.edi"}},
      {"everything", choose_all, {}}};
  int number = 0;
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    new_survey("whole" + std::to_string(++number) + ".mdb");
    import_all(lines());
    remove(each.choose);
    const std::vector<std::string> remains = meaning();
    new_survey("part" + std::to_string(number) + ".mdb");
    for (const MadeFile& file : lines()) {
      if (std::ranges::find(each.files_left, file.name) != each.files_left.end()) {
        ASSERT_EQ(import(file), 0);
      }
    }
    EXPECT_EQ(difference(remains, meaning()), "");
  }
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(EditedSurvey, A_station_goes_with_all_that_is_known_of_it_but_a_place_that_another_line_shares) {
  new_survey();
  import_all(lines());
  Module_database::find_station(Module_database::StationSearch::create, "900E", 50);  // a ghost stays
  ASSERT_EQ(rows_in("LocationLookupTable"), 4);
  remove(choose_300E);
  for (const char* const table : {"StationsTable", "SitesTable"}) {
    EXPECT_EQ(rows_in(std::string(table) + " WHERE SurveyLine = '200E' AND Station = 300"), 0) << table;
  }
  EXPECT_EQ(rows_in("StationsTable"), 4);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE LineNumber = '200E' AND Station = 300"), 0);
  EXPECT_EQ(rows_in("FileTable"), 4);  // c.edi had no other station
  EXPECT_EQ(rows_in("FileTable WHERE SurveyFile = 'a.edi' AND Station = 100"), 1);
  EXPECT_EQ(rows_in("LocationLookupTable"), 4);
  EXPECT_EQ(rows_in("LocationLookupTable WHERE SurveyLine = '300N' AND Station = 200"), 1);
  EXPECT_EQ(rows_in("ReadingFactsTable WHERE ReadingID NOT IN (SELECT ID FROM ReadingsDataTable)"), 0);

  remove(choose_line_200);
  EXPECT_EQ(rows_in("StationsTable"), 3);
  EXPECT_EQ(rows_in("FileTable"), 1);
  EXPECT_EQ(rows_in("LocationLookupTable"), 3);
  EXPECT_EQ(rows_in("ReadingsFrequencyTable"), 1);
}

TEST_F(EditedSurvey, Averages_without_a_repeat_that_is_used_go) {
  new_survey();
  import_all({{"a.edi", "200E", {"100"}}, {"b.edi", "200E", {"100"}, 2, "40 50 60"}});
  Module_database::open_survey().database.execute(
      "UPDATE ReadingsDataTable SET UseReading = False WHERE FileID IN (SELECT ID FROM FileTable WHERE "
      "SurveyFile = 'a.edi')");
  remove(choose_b);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 4);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID < 0"), 0);
}

TEST_F(EditedSurvey, Nothing_goes_when_it_is_stopped_or_the_survey_can_t_be_written) {
  new_survey();
  import_all(lines());
  Module_Brenlox::push_undo_static(1, 1.0F);
  const std::vector<std::string> before = everything();
  const SurveyContents contents = survey_contents();
  Choice choice;
  choose_b(contents, choice);
  const RemovalPlan plan = plan_removal(contents, choice);
  int asked = 0;
  interface->stop = [&] { return ++asked > 4; };  // while averages are computed
  EXPECT_EQ(remove_readings(contents, plan), Outcome::stopped);
  EXPECT_EQ(difference(everything(), before), "");
  EXPECT_FALSE(removal_can_be_undone());
  EXPECT_EQ(Module_Brenlox::undo_count(), 1U);

  interface->stop = [] { return false; };
  Module_database::open_survey().private_folder = std::make_unique<PrivateFolder>();
  EXPECT_EQ(remove_readings(contents, plan), Outcome::failed);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  Module_database::open_survey().private_folder.reset();
  EXPECT_EQ(difference(everything(), before), "");

  EXPECT_EQ(remove_readings(contents, plan), Outcome::finished);
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
}
