// Surveys that somebody else has written: what their schema would run stays without effect, and tables and
// rows that no writer of a survey makes are named.
#include <filesystem>
#include <string>
#include <vector>

#include "database/frequency_store.h"
#include "database/reading.h"
#include "database/survey_lists.h"
#include "tests/support/foreign_change.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;
namespace fs = std::filesystem;

namespace {

const std::string damaged = "An error occurred while opening the database: the survey is damaged: ";

class Foreign_schema : public SurveyTest {
 protected:
  /// A closed survey with a file and a reading of three frequencies.
  std::string closed_survey(const std::string& name = "survey.mdb") {
    std::string path = new_survey(name);
    dao::Recordset& files = open_survey().files;
    files.add_new();
    files.set_text("LineNumber", "200E");
    files.update();
    Curve curve;
    curve.assign(3);
    curve.frequencies = {1.0F, 2.0F, 4.0F};
    dao::Recordset& readings = open_survey().readings;
    readings.add_new();
    readings.set_text("LineNumber", "200E");
    readings.set_long("ReferenceType", 0);
    readings.set_single("ResOffset", 1.0F);
    write_curve(readings, curve);
    readings.update();
    EXPECT_EQ(add_reading_frequencies(0, 0.0F, curve.frequencies), 0);
    EXPECT_EQ(close_database(), 0);
    return path;
  }
};

}  // namespace

TEST_F(Foreign_schema, Triggers_and_views_are_never_run_and_taken_out) {
  const std::string path = closed_survey();
  ASSERT_TRUE(
      change_file(path,
                  "CREATE TRIGGER Sweep AFTER UPDATE ON ReadingsDataTable BEGIN DELETE FROM FileTable; END;"
                  "CREATE TRIGGER Sweep2 AFTER INSERT ON ReadingsDataTable BEGIN DELETE FROM FileTable; END;"
                  "CREATE VIEW \"My \"\"lines\" AS SELECT LineNumber FROM FileTable;"
                  "CREATE TABLE Notes(x); INSERT INTO Notes VALUES ('kept');"));
  const std::string before = file_contents(path);
  ASSERT_EQ(open_database(), 0);
  const std::string backup = folder.path("survey.bak");
  EXPECT_EQ(interface.take_messages(),
            std::vector<std::string>{
                "This survey carried triggers or views, which are never run here: trigger Sweep on "
                "ReadingsDataTable, trigger Sweep2 on ReadingsDataTable, view My \"lines. They have "
                "been taken out; " +
                backup + " keeps the file as it was."});
  EXPECT_TRUE(file_contents(backup) == before);
  dao::Recordset& readings = open_survey().readings;
  readings.move_first();
  readings.edit();
  readings.set_single("ResOffset", 2.0F);
  readings.update();
  readings.add_new();
  readings.update();
  EXPECT_EQ(rows_in("FileTable"), 1);
  EXPECT_EQ(rows_in("Notes"), 1);
  EXPECT_TRUE(open_survey().database.other_objects().empty());
  reopen();
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
}

TEST_F(Foreign_schema, A_database_that_is_no_survey_keeps_its_views) {
  const std::string path = folder.path("other.mdb");
  ASSERT_TRUE(change_file(path, "CREATE TABLE Notes(x); CREATE VIEW FileTable AS SELECT x FROM Notes;"));
  session().database_file = path;
  EXPECT_EQ(open_database(), -1);
  EXPECT_EQ(interface.take_messages(),
            std::vector<std::string>{"This database does not have the required form"});
  EXPECT_EQ(dao::Database::open(path).other_objects().size(), 1U);
}

TEST_F(Foreign_schema, A_table_of_another_kind_or_type_is_a_damaged_survey_by_name) {
  const struct {
    const char* change;
    const char* finding;
  } cases[] = {
      {"ALTER TABLE FileTable RENAME TO Hidden; CREATE VIEW FileTable AS SELECT * FROM Hidden;",
       "FileTable is a view, not a table"},
      {"ALTER TABLE FileTable RENAME TO Hidden; ALTER TABLE StationsTable RENAME TO Unseen;"
       "CREATE VIEW FileTable AS SELECT * FROM Hidden; CREATE VIEW StationsTable AS SELECT * FROM Unseen;",
       "FileTable is a view, not a table"},
      {"DROP TABLE StationsTable; CREATE VIRTUAL TABLE StationsTable USING fts5(SurveyLine);",
       "StationsTable is a table made by a program, not a stored one"},
      {"DROP TABLE LocationLookupTable; CREATE TABLE LocationLookupTable(ID INTEGER PRIMARY KEY, Station "
       "TEXT(8));",
       "the column Station of LocationLookupTable is of the type TEXT in place of DOUBLE"},
      {"DROP TABLE LocationLookupTable; CREATE TABLE LocationLookupTable(ID LONG, Station DOUBLE);",
       "the column ID of LocationLookupTable is of the type LONG in place of COUNTER"},
      {"DROP TABLE LocationLookupTable;"
       "CREATE TABLE LocationLookupTable(ID INTEGER PRIMARY KEY, Station DOUBLE) WITHOUT ROWID;",
       "LocationLookupTable is a table without row numbers"},
      {"DROP TABLE StationsTable; CREATE TABLE StationsTable(ID INTEGER PRIMARY KEY, SurveyLine TEXT(32) "
       "UNIQUE ON CONFLICT REPLACE);",
       "StationsTable is a table whose rows replace one another"},
  };
  int number = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.finding);
    const std::string path = closed_survey("survey" + std::to_string(++number) + ".mdb");
    ASSERT_TRUE(change_file(path, c.change));
    const std::string before = file_contents(path);
    fs::remove(backup_path(path));
    EXPECT_EQ(open_database(), -1);
    EXPECT_FALSE(session().database_open);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{damaged + c.finding});
    EXPECT_TRUE(file_contents(path) == before);
    EXPECT_FALSE(fs::exists(backup_path(path)));
  }
}

TEST_F(Foreign_schema, A_damaged_reference_type_keeps_no_survey_closed) {
  const std::string path = closed_survey();
  ASSERT_TRUE(change_file(path,
                          "UPDATE ReadingsDataTable SET ReferenceType = 'z';"
                          "UPDATE FileTable SET DipoleLength = 'z';"));
  session().database_file = path;
  EXPECT_EQ(open_database(), 0);
  EXPECT_EQ(listed_lines(), std::vector<std::string>{"200E"});
  EXPECT_EQ(listed_dipoles(), std::vector<float>{0.0F});  // of the reading
}

TEST_F(Foreign_schema, A_row_that_no_writer_stores_is_named) {
  const struct {
    const char* change;
    const char* finding;
  } cases[] = {
      {"NumFrequencies = 'three'",
       "row 1 of ReadingsDataTable is damaged: its NumFrequencies is not a number"},
      {"NumFrequencies = 1e12",
       "row 1 of ReadingsDataTable is damaged: its NumFrequencies is not a whole number of 32 bits"},
      {"ResOffset = 1e300",
       "row 1 of ReadingsDataTable is damaged: its ResOffset is not in the range of its column"},
      {"MaskBinary = 'masks of a text, 24b'",
       "row 1 of ReadingsDataTable is damaged: its MaskBinary is not bytes"},
      {"DataBinary = x'00'", "reading 1 is damaged: DataBinary has 1 bytes in place of 240"},
  };
  int number = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.change);
    const std::string path = closed_survey("survey" + std::to_string(++number) + ".mdb");
    ASSERT_TRUE(change_file(path, std::string("UPDATE ReadingsDataTable SET ") + c.change));
    ASSERT_EQ(open_database(), 0);
    std::string finding;
    try {
      open_survey().readings.move_first();
      (void)read_reading(open_survey().readings);
    } catch (const dao::Error& failure) {
      finding = failure.what();
    }
    EXPECT_EQ(finding, c.finding);
    EXPECT_EQ(close_database(), 0);
  }
  const std::string path = closed_survey("list.mdb");
  ASSERT_TRUE(
      change_file(path, "UPDATE ReadingsFrequencyTable SET MaskBinary = x'01000000010000000100000001'"));
  ASSERT_EQ(open_database(), 0);
  EXPECT_FALSE(load_reference_frequencies(0).has_value());
  EXPECT_EQ(
      interface.take_messages(),
      std::vector<std::string>{"An error occurred while creating the frequency lists: the frequency list of "
                               "reference type 0 is damaged"});
}

TEST_F(Foreign_schema, A_lost_frequency_list_is_made_again_and_told_once) {
  const std::string path = closed_survey();
  for (const char* const lost : {"ReadingsFrequencyTable", "FileTable"}) {
    SCOPED_TRACE(lost);
    const bool is_list = lost == std::string("ReadingsFrequencyTable");
    ASSERT_TRUE(change_file(path, std::string("DROP TABLE ") + lost));
    ASSERT_EQ(open_database(), 0);
    EXPECT_EQ(
        interface.take_messages(),
        std::vector<std::string>{
            is_list
                ? "This survey had no ReadingsFrequencyTable. The frequency lists were made again from its "
                  "readings, with all frequencies on."
                : "This survey had no FileTable. Lines, reference types and dipole lengths come from its "
                  "readings."});
    const auto list = load_reference_frequencies(0);
    ASSERT_TRUE(list.has_value());
    EXPECT_EQ(list->list, (std::vector<float>{1.0F, 2.0F, 4.0F}));
    EXPECT_EQ(list->enabled, (std::vector<std::int32_t>{1, 1, 1}));
    reopen();
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
    EXPECT_EQ(close_database(), 0);
  }
}
