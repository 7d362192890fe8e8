#include "reduction/averages.h"
#include "survey_edits/rename.h"
#include "survey_edits/taken_out.h"
#include "tests/survey_edits/edited_survey.h"

using namespace Module_survey_edits;
using Module_averaged_data::Outcome;

namespace {

template <std::size_t... Places>
void choose_files(const SurveyContents& /*contents*/, Choice& choice) {
  (choice.files.insert(Places), ...);
}

void choose_crossing(const SurveyContents& contents, Choice& choice) {
  const auto stations = stations_named(contents, "200E", 300);
  choice.stations.insert(stations.begin(), stations.end());
}

void choose_all(const SurveyContents& contents, Choice& choice) {
  for (std::size_t line = 0; line < contents.lines.size(); ++line) {
    choice.add_line(contents, line);
  }
}

void choose_ghosts(const SurveyContents& contents, Choice& choice) { choice.add_ghosts(contents); }

/// The second station of a.edi becomes an event of its own, as in a file with a head for each.
void split_events_of_a() {
  dao::Database& database = Module_database::open_survey().database;
  dao::Recordset& files = Module_database::open_survey().files;
  files.find_first("SurveyFile = 'a.edi'");
  const std::int32_t ID = files.get_long("ID");
  const double date = files.get_date("DateCollected");
  files.add_new();
  files.set_text("SurveyFile", "a.edi");
  files.set_date("DateCollected", date);
  files.set_text("LineNumber", "200E");
  files.set_double("Station", 300);
  files.set_long("EventNumber", 7);
  files.update();
  database.execute("UPDATE ReadingsDataTable SET EventNumber = 7 WHERE Station = 300 AND FileID = " +
                   std::to_string(ID));
}

void choose_first_of_a(const SurveyContents& contents, Choice& choice) {
  const auto stations = stations_named(contents, "200E", 100);
  choice.stations.insert(stations.begin(), stations.end());
}

}  // namespace

TEST_F(EditedSurvey, Undo_brings_every_byte_back) {
  struct Case {
    const char* what;
    Choose choose;
  };
  const std::vector<Case> cases{{"a repeat", choose_files<1>},       {"the newest file", choose_files<2>},
                                {"a shared place", choose_crossing}, {"the first event", choose_first_of_a},
                                {"everything", choose_all},          {"a ghost", choose_ghosts}};
  new_survey();
  import_all(lines());
  split_events_of_a();
  Module_database::find_station(Module_database::StationSearch::create, "900E", 50);
  // What a user has set on an average must come back, too, where its frequencies change in between.
  Module_database::open_survey().database.execute(
      "UPDATE ReadingsDataTable SET ResOffset = 2.5 WHERE FileID < 0");
  const std::vector<std::string> before = everything();
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    EXPECT_FALSE(remove(each.choose).empty());
    EXPECT_NE(everything(), before);
    EXPECT_TRUE(removal_can_be_undone());
    undo();
    EXPECT_EQ(difference(everything(), before), "");
    EXPECT_FALSE(removal_can_be_undone());
  }
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(EditedSurvey, Readings_without_a_row_of_their_station_go_by_their_own_line_and_number) {
  new_survey();
  import_all(lines());
  dao::Database& database = Module_database::open_survey().database;
  database.execute("DELETE FROM StationsTable WHERE SurveyLine = '200E'");
  database.execute("UPDATE ReadingsDataTable SET StationID = -1 WHERE LineNumber = '200E'");
  database.execute("DELETE FROM FileTable WHERE SurveyFile = 'c.edi'");
  requery_survey();
  const std::vector<std::string> before = everything();
  remove(choose_crossing);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE LineNumber = '200E' AND Station = 300"), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE LineNumber = '200E' AND Station = 100 AND FileID > 0"), 12);
  EXPECT_NE(rows_in("ReadingsDataTable WHERE LineNumber = '200E' AND Station = 100 AND FileID < 0"), 0);
  undo();
  EXPECT_EQ(difference(everything(), before), "");
}

TEST_F(EditedSurvey, The_first_row_of_a_file_stays_the_one_that_its_readings_name) {
  new_survey();
  import_all(lines());
  split_events_of_a();
  remove(choose_first_of_a);
  EXPECT_EQ(rows_in("FileTable WHERE SurveyFile = 'a.edi'"), 1);
  EXPECT_EQ(rows_in("FileTable WHERE SurveyFile = 'a.edi' AND EventNumber = 7"), 1);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND FileID NOT IN (SELECT ID FROM FileTable)"), 0);
}

TEST_F(EditedSurvey, Edits_since_the_removal_stay_and_masks_of_before_come_back) {
  const auto edit = [] {
    Module_database::open_survey().database.execute(
        "UPDATE ReadingsDataTable SET ResOffset = 3 WHERE FileID < 0 AND ReductionType = 2 AND Station = "
        "500");
    Module_database::open_survey().database.execute(
        "UPDATE ReadingsDataTable SET UsePhase = False WHERE FileID < 0 AND ReductionType = 2 AND Station = "
        "100");
  };
  const auto mask = [] {  // on averages with a frequency of b.edi that goes and comes back
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE FileID < 0 AND ReductionType = 1 AND Station = 300");
    for (; !rows.eof(); rows.move_next()) {
      Module_database::StoredReading average = Module_database::read_reading(rows);
      average.curve.counts_at(1, 1) = 0;
      rows.edit();
      Module_database::write_curve(rows, average.curve);
      rows.update();
    }
  };
  new_survey("expected.mdb");
  import_all(lines());
  mask();
  edit();
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  const std::vector<std::string> expected = everything();
  new_survey("undone.mdb");
  import_all(lines());
  mask();
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  remove(choose_files<1>);
  edit();
  const std::string told = undo();
  EXPECT_NE(told.find("computed again"), std::string::npos) << told;
  EXPECT_EQ(difference(everything(), expected), "");
}

TEST_F(EditedSurvey, Rows_whose_numbers_are_taken_come_back_under_others) {
  const std::vector<MadeFile> later{{"d.edi", "200E", {"700"}, 1, "5 6 7"},
                                    {"e.edi", "300N", {"500"}, 4, "15 16 17"},
                                    {"f.edi", "200E", {"300"}, 9, "8 9 10"}};
  struct Case {
    const char* what;
    Choose choose;
  };
  // Stations and places of the removal are there again from f.edi and e.edi, or only from the removal.
  for (const Case& each : {Case{"files", choose_files<1, 2>}, Case{"all", choose_all}}) {
    SCOPED_TRACE(each.what);
    new_survey(std::string("with_") + each.what + ".mdb");
    import_all(lines());
    const std::int32_t highest =
        static_cast<std::int32_t>(Module_database::get_max_value("ID", "ReadingsDataTable WHERE FileID > 0"));
    remove(each.choose);
    import_all(later);
    ASSERT_GT(rows_in("ReadingsDataTable WHERE FileID > 0 AND ID <= " + std::to_string(highest) +
                      " AND FileID IN (SELECT ID FROM FileTable WHERE SurveyFile = 'd.edi')"),
              0);
    undo();
    const std::vector<std::string> restored = meaning();
    new_survey(std::string("without_") + each.what + ".mdb");
    import_all(lines());
    import_all(later);
    EXPECT_EQ(difference(restored, meaning()), "");
  }
}

TEST_F(EditedSurvey, A_file_that_was_imported_again_stays_as_it_is) {
  new_survey();
  import_all(lines());
  remove(choose_files<0, 1>);
  MadeFile b = lines()[1];
  b.rho = "41 51 61";
  ASSERT_EQ(import(b), 0);
  const std::string told = undo();
  EXPECT_NE(told.find("stays as it is now: b.edi"), std::string::npos) << told;
  const std::vector<std::string> restored = meaning();
  new_survey("expected.mdb");
  import_all(lines());
  ASSERT_EQ(import(b), 0);
  // It has named the sites since the other file was taken out.
  Module_database::open_survey().database.execute(
      "UPDATE SitesTable SET SurveyFile = 'b.edi' WHERE SurveyFile = 'a.edi'");
  EXPECT_EQ(difference(restored, meaning()), "");

  // The same for a file that has only lost a station.
  remove(choose_crossing);
  b.rho = "42 52 62";
  ASSERT_EQ(import(b), 0);
  undo();
  EXPECT_EQ(
      rows_in("ReadingsDataTable WHERE FileID IN (SELECT ID FROM FileTable WHERE SurveyFile = 'b.edi')"), 8);
}

TEST_F(EditedSurvey, A_removal_can_be_undone_until_the_next_one_a_renaming_or_the_end) {
  new_survey();
  import_all(lines());
  remove(choose_files<0>);
  const std::vector<std::string> before = everything();
  remove(choose_files<0>);  // b.edi
  undo();
  EXPECT_EQ(difference(everything(), before), "");
  remove(choose_files<0>);
  interface->stop = [] { return true; };
  std::string told;
  const auto contents = survey_contents();
  EXPECT_EQ(remove_readings(contents, plan_removal(contents, {{0}, {}})), Outcome::stopped);
  interface->stop = [] { return false; };
  undo();  // the one before, still to the byte
  EXPECT_EQ(difference(everything(), before), "");

  remove(choose_files<0>);
  ASSERT_EQ(rename_station("300N", 500, 600), 0);
  EXPECT_FALSE(removal_can_be_undone());
  remove(choose_files<0>);
  reopen();
  EXPECT_FALSE(removal_can_be_undone());
}
