// The dialect: what criteria find, what is refused before it reaches the engine, and which searches are
// indexed.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/number_text.h"
#include "platform/dao/connection.h"
#include "platform/dao/database.h"
#include "platform/dao/statement_translator.h"
#include "platform/dao/text_literal.h"
#include "tests/support/temporary_folder.h"

namespace {

class Criteria : public ::testing::Test {
 protected:
  Criteria() {
    database_.execute(
        "CREATE TABLE FileTable (ID COUNTER,SurveyFile TEXT(255),DateCollected DATETIME,Station Double,"
        "EventNumber LONG,SampleRate SINGLE,Used BIT)");
    rows_ = database_.open_recordset("SELECT * FROM FileTable");
  }

  void add(const std::string& file, double day, double station, float rate) {
    rows_.add_new();
    rows_.set_text("SurveyFile", file);
    rows_.set_date("DateCollected", day);
    rows_.set_double("Station", station);
    rows_.set_single("SampleRate", rate);
    rows_.set_bit("Used", true);
    rows_.update();
  }

  bool finds(const std::string& criteria) {
    rows_.find_first(criteria);
    return !rows_.no_match();
  }

  std::string refusal(const std::string& criteria) {
    try {
      rows_.find_first(criteria);
    } catch (const dao::Error& failure) {
      return failure.what();
    }
    return {};
  }

  TemporaryFolder folder_;
  dao::Database database_ = dao::Database::create(folder_.path("survey.mdb"), "");
  dao::Recordset rows_;
};

TEST_F(Criteria, Find_numbers_by_the_decimal_that_people_see) {
  add("a", 0.0, 1250.4, 0.1F);
  add("b", 0.0, -12.5, 24000.0F / 7.0F);
  add("c", 0.0, 1e-7, 33.3F);
  EXPECT_TRUE(finds("SampleRate = 0.1"));
  EXPECT_TRUE(finds("SampleRate = 33.3 AND Station = " + criterion_text(1e-7)));
  EXPECT_TRUE(finds("SampleRate = " + criterion_text(24000.0F / 7.0F)));
  EXPECT_TRUE(finds("Station = 1250.4"));
  EXPECT_TRUE(finds("Station = -12.5 AND EventNumber IS NULL"));
  EXPECT_TRUE(finds("Abs(Station - -12.0) + Abs(SampleRate - 3428.0) <2 "));
  EXPECT_TRUE(finds("(Station < 0 OR Station > 2000) AND NOT ID = 1"));
  EXPECT_TRUE(finds("Used = True"));
  EXPECT_FALSE(finds("Used=False"));
  EXPECT_FALSE(finds("Station = 1250.40001"));
}

TEST_F(Criteria, Compare_text_without_case_and_trailing_blanks) {
  add("Line5.EDI  ", 0.0, 0.0, 0.0F);
  add("Größe Ü.edi", 0.0, 0.0, 0.0F);
  add("Линия.edi", 0.0, 0.0, 0.0F);
  for (const char* text :
       {"LINE5.edi", "line5.edi ", "Line5.EDI  ", "GRÖßE ü.EDI ", "größe Ü.edi", "линия.EDI"}) {
    EXPECT_TRUE(finds("SurveyFile = '" + std::string(text) + "'")) << text;
  }
  for (const char* text :
       {" Line5.EDI", "Line5", "Line_.EDI", "Line5.EDI%", "Groesse Ü.edi", "Größe Ö.edi", ""}) {
    EXPECT_FALSE(finds("SurveyFile = '" + std::string(text) + "'")) << text;
  }
}

TEST_F(Criteria, Find_any_text_as_a_literal) {
  const std::string names[] = {"O'Brien \"7\"; --", "'", "''", "x' OR 'a'='a", "ends'", "[ID]", "plain"};
  for (const std::string& name : names) {
    EXPECT_FALSE(finds("SurveyFile = " + dao::text_literal(name))) << name;
    add(name, 0.0, 0.0, 0.0F);
    EXPECT_TRUE(finds("Station = 0 AND SurveyFile = " + dao::text_literal(name) + " AND ID > 0")) << name;
  }
  database_.execute("DELETE FROM FileTable WHERE SurveyFile = " + dao::text_literal(names[3]));
  EXPECT_FALSE(finds("SurveyFile = " + dao::text_literal(names[3])));
  EXPECT_TRUE(finds("SurveyFile = " + dao::text_literal(names[0])));
  EXPECT_THROW(database_.execute("DELETE FROM FileTable WHERE SurveyFile = 'ends''"), dao::Error);
}

TEST_F(Criteria, Find_a_date_at_any_hour_of_its_day) {
  add("a", 36599.698, 0.0, 0.0F);  // 14 March 2000, 16:45
  EXPECT_TRUE(finds("DateCollected = #03/14/2000#"));
  EXPECT_TRUE(finds("SurveyFile = 'a ' AND DateCollected = #3/14/2000# AND Station = 0"));
  EXPECT_FALSE(finds("DateCollected = #03/13/2000#"));
  EXPECT_FALSE(finds("DateCollected = #03/15/2000#"));
  EXPECT_FALSE(finds("DateCollected <> #03/14/2000#"));
  for (const char* date : {"02/30/2000", "13/01/2000", "2000-03-14", "03/14/2000 ", "", "03/14/20000"}) {
    EXPECT_NE(refusal("DateCollected = #" + std::string(date) + "#").find("syntax error"), std::string::npos)
        << date;
  }
}

TEST_F(Criteria, With_a_stray_sign_are_refused_and_change_nothing) {
  add("a", 0.0, 0.0, 0.0F);
  const std::string texts[] = {"O'Brien",
                               "it's ' odd",
                               "'",
                               "x' OR 'a'='a",
                               "x' OR 1=1 --",
                               "x' OR 1=1 /*",
                               "x'; DROP TABLE FileTable; --",
                               "x') OR (SurveyFile = 'a",
                               "x' OR SurveyFile = 'a",
                               "x' IS NOT NULL AND SurveyFile <> '",
                               "x' <> SurveyFile AND SurveyFile <> '",
                               "x' AND 1 = 1 OR ID > 0 AND SurveyFile <> '"};
  for (const std::string& text : texts) {
    EXPECT_NE(refusal("SurveyFile = '" + text + "'").find("syntax error in \""), std::string::npos) << text;
    EXPECT_THROW(database_.execute("DELETE FROM FileTable WHERE SurveyFile = '" + text + "'"), dao::Error)
        << text;
  }
  for (const char* criteria :
       {"", "ID =", "ID = 1)", "(ID = 1", "ID = 1; ID = 2", "ID = 0x10", "ID = \"a\"",
        "ID = (SELECT MAX(ID) FROM FileTable)", "load_extension('x') = 1", "ID = 1 -- 2", "ID = 1e999",
        "ID ? 1", "SurveyFile = 5", "ID = 'a'", "[ID = 1", "[] = 1"}) {
    EXPECT_NE(refusal(criteria), "") << criteria;
  }
  EXPECT_TRUE(finds("SurveyFile = 'a'"));
  EXPECT_TRUE(finds("SurveyFile = 'a';"));
  EXPECT_FALSE(finds("SurveyFile = '--;/*'"));
}

TEST_F(Criteria, May_ask_for_rows_of_another_table) {
  add("a", 0.0, 1.0, 1.0F);
  add("b", 0.0, 2.0, 2.0F);
  database_.execute("CREATE TABLE Facts (ID COUNTER,FileID LONG)");
  for (const int file : {1, 2, 7}) {
    database_.execute("INSERT INTO Facts (FileID) VALUES (" + std::to_string(file) + ")");
  }
  const auto facts = [&](const std::string& condition) {
    return database_.open_recordset("SELECT * FROM Facts WHERE FileID " + condition).record_count();
  };
  EXPECT_EQ(facts("IN (SELECT ID FROM FileTable)"), 2);
  EXPECT_EQ(facts("IN (SELECT ID FROM FileTable WHERE SurveyFile = 'B')"), 1);
  EXPECT_EQ(facts("IN (SELECT ID FROM FileTable WHERE (Station = 1 OR Station = 2) AND SampleRate < 9)"), 2);
  for (const char* condition :
       {"IN (SELECT ID FROM FileTable WHERE SurveyFile = 'x' OR SurveyFile = 'a')",
        "IN (SELECT ID FROM FileTable WHERE)", "IN (SELECT ID FROM Nothing)", "IN (SELECT ID FROM FileTable",
        "IN (SELECT FROM FileTable)", "IN (SELECT ID FROM FileTable ORDER BY ID)"}) {
    EXPECT_THROW((void)facts(condition), dao::Error) << condition;
  }
  database_.execute("DELETE FROM Facts WHERE FileID NOT IN (SELECT ID FROM FileTable)");
  EXPECT_EQ(facts("> 0"), 2);
}

TEST_F(Criteria, And_other_statements_that_the_dialect_lacks_are_refused) {
  for (const char* statement :
       {"", "PRAGMA journal_mode = OFF", "ATTACH 'x' AS y", "SELECT * FROM FileTable", "VACUUM",
        "CREATE TABLE t (a VARCHAR)", "CREATE TABLE t (a TEXT(0))", "CREATE TABLE t (a LONG) x",
        "UPDATE FileTable SET ID2 = 1", "UPDATE FileTable SET EventNumber = 3000000000",
        "INSERT INTO FileTable (ID, Station) VALUES (1)", "DELETE FROM Nothing", "DELETE FROM FileTable 5"}) {
    EXPECT_THROW(database_.execute(statement), dao::Error) << statement;
  }
  for (const char* statement : {"DELETE FROM FileTable", "SELECT FROM FileTable", "SELECT * FROM Nothing",
                                "SELECT * FROM FileTable, FileTable", "SELECT * FROM FileTable ORDER BY",
                                "SELECT * FROM FileTable ORDER BY 1;2", "SELECT Nothing FROM FileTable"}) {
    EXPECT_THROW((void)database_.open_recordset(statement), dao::Error) << statement;
  }
}

TEST_F(Criteria, Lines_of_one_number_stay_together_in_the_order_of_their_numbers) {
  database_.execute("CREATE TABLE Stations (ID COUNTER,SurveyLine TEXT(32),Station Double)");
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Stations ORDER BY Val(SurveyLine),Station");
  for (const double station : {300.0, 100.0, 200.0}) {
    for (const char* line : {"1000E", "200W", "200E", "90N"}) {
      rows.add_new();
      rows.set_text("SurveyLine", line);
      rows.set_double("Station", station);
      rows.update();
    }
  }
  rows.requery();
  std::string order;
  for (; !rows.eof(); rows.move_next()) {
    order += rows.get_text("SurveyLine") + "/" + plain_text(rows.get_double("Station")) + " ";
  }
  EXPECT_EQ(order,
            "90N/100 90N/200 90N/300 200E/100 200E/200 200E/300 200W/100 200W/200 200W/300 "
            "1000E/100 1000E/200 1000E/300 ");
}

TEST_F(Criteria, Of_actions_meet_the_rows_that_they_name) {
  database_.execute(
      "INSERT INTO FileTable (SurveyFile, SampleRate, DateCollected) VALUES ('Ex', 0.1, #01/01/1900#)");
  database_.execute("UPDATE FileTable SET SurveyFile  = 'ExHy', Station = -2.5 WHERE SurveyFile  = 'Ex'");
  EXPECT_TRUE(finds("SurveyFile = 'ExHy' AND Station = -2.5 AND SampleRate = 0.1"));
  EXPECT_EQ(rows_.get_single("SampleRate"), 0.1F);
  EXPECT_EQ(rows_.get_date("DateCollected"), 2.0);
  database_.execute("DELETE FROM FileTable WHERE SurveyFile = 'exhy'");
  EXPECT_FALSE(finds("ID > 0"));
  EXPECT_THROW(database_.execute("UPDATE FileTable SET SurveyFile = '" + std::string(256, 'a') + "'"),
               dao::Error);
}

// The engine's own description of its plan for a search.
std::string plan_of(const std::string& path, const std::string& table, const std::string& criteria) {
  dao::Connection connection(path, dao::Access::read_only);
  const dao::Fragment fragment = dao::translate_criteria(criteria, *connection.table(table));
  dao::Statement statement(connection, "EXPLAIN QUERY PLAN SELECT rowid FROM " + dao::quoted_name(table) +
                                           " WHERE " + fragment.sql + " ORDER BY rowid LIMIT 1");
  statement.bind(fragment.parameters);
  std::string plan;
  while (statement.step()) {
    plan += statement.text(3) + "\n";
  }
  return plan;
}

TEST_F(Criteria, Of_every_search_for_a_reading_use_an_index) {
  database_.execute(
      "CREATE TABLE Readings (ID COUNTER,FileID LONG,StationID LONG,LineNumber TEXT(32),Station Double,"
      "ReductionType LONG,SampleRate SINGLE,DataType TEXT(8))");
  database_.execute("CREATE INDEX IF NOT EXISTS FileName ON FileTable(SurveyFile,DateCollected,EventNumber)");
  database_.execute("CREATE INDEX IF NOT EXISTS OfFile ON Readings(FileID,SampleRate,DataType)");
  database_.execute("CREATE INDEX IF NOT EXISTS OfStation ON Readings(StationID,ReductionType,SampleRate)");
  database_.execute("CREATE INDEX IF NOT EXISTS OfLine ON Readings(LineNumber,Station)");
  database_.execute("CREATE INDEX IF NOT EXISTS OfLine ON Readings(LineNumber,Station)");
  const std::string path = folder_.path("survey.mdb");
  struct Case {
    const char* table;
    const char* criteria;
    const char* index;
  };
  const Case cases[] = {
      {"FileTable", "SurveyFile = 'a' AND DateCollected = #03/14/2000# AND EventNumber = 1",
       "FileName (<expr>=? AND DateCollected>? AND DateCollected<?)"},
      {"FileTable", "SurveyFile = 'aü' AND DateCollected = #03/14/2000#", "FileName (<expr>>? AND <expr><?)"},
      {"Readings", "FileID = 3 AND SampleRate = 0.1 AND DataType = 'ExHy'",
       "OfFile (FileID=? AND SampleRate=? AND <expr>=?)"},
      {"Readings", "FileID = 3", "OfFile (FileID=?)"},
      {"Readings", "FileID<0 AND StationID = 3 AND ReductionType=1",
       "OfStation (StationID=? AND ReductionType=?)"},
      {"Readings", "LineNumber = '200W' AND Station = 1250.4", "OfLine (<expr>=? AND Station=?)"},
  };
  for (const Case& c : cases) {
    const std::string plan = plan_of(path, c.table, c.criteria);
    EXPECT_NE(plan.find(c.index), std::string::npos) << c.criteria << "\n" << plan;
  }
}

TEST_F(Criteria, Know_tables_and_columns_by_their_declaration) {
  database_.execute("CREATE TABLE [Odd \" Name] (ID LONG,[The Name] TEXT(32), Size Long)");
  database_.execute("CREATE UNIQUE INDEX [Odd \" Name] ON [Odd \" Name](ID, [The Name]) WITH PRIMARY");
  EXPECT_EQ(database_.table_names(), (std::vector<std::string>{"FileTable", "Odd \" Name"}));
  const std::vector<dao::Column> columns = database_.columns("odd \" name");
  ASSERT_EQ(columns.size(), 3U);
  EXPECT_EQ(columns[0].type, dao::ColumnType::long_integer);
  EXPECT_EQ(columns[1].name, "The Name");
  EXPECT_EQ(columns[1].size, 32);
  EXPECT_EQ(database_.columns("FileTable")[0].type, dao::ColumnType::counter);
  EXPECT_EQ(database_.columns("FileTable")[6].type, dao::ColumnType::bit);
  EXPECT_THROW((void)database_.columns("Nothing"), dao::Error);
  database_.execute("INSERT INTO [Odd \" Name] (ID, [The Name]) VALUES (1, 'a')");
  EXPECT_THROW(database_.execute("INSERT INTO [Odd \" Name] (ID, [The Name]) VALUES (1, 'A ')"), dao::Error);
  database_.execute("DROP TABLE [Odd \" Name]");
  EXPECT_THROW((void)database_.columns("Odd \" Name"), dao::Error);
}

}  // namespace
