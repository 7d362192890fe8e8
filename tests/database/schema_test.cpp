#include "database/schema.h"

#include <algorithm>

#include "tests/support/survey_fixture.h"

using namespace Module_database;

TEST_F(SurveyTest, A_new_survey_has_ten_empty_tables_with_their_columns) {
  new_survey();
  const std::vector<std::string> names = open_survey().database.table_names();
  EXPECT_EQ(names.size(), 10U);
  for (const std::string& name : names) {
    EXPECT_EQ(rows_in("[" + name + "]"), 0) << name;
  }

  struct Case {
    const char* table;
    const char* column;
    dao::ColumnType type;
    int size;
  };
  const Case cases[] = {{"SurveyHeader", "BrenloxVersion", dao::ColumnType::text, 16},
                        {"MaskDefinitionTable", "Failed_7", dao::ColumnType::long_integer, 0},
                        {"FileTable", "DateAnalysed", dao::ColumnType::date_time, 0},
                        {"FileTable", "Filter", dao::ColumnType::text, 16},
                        {"ReadingsDataTable", "UsePhase", dao::ColumnType::bit, 0},
                        {"ReadingsDataTable", "NumFields", dao::ColumnType::long_integer, 0},
                        {"ReadingsDataTable", "MaskBinary", dao::ColumnType::long_binary, 0},
                        {"ReadingsFrequencyTable", "ID", dao::ColumnType::counter, 0},
                        {"StationsTable", "Elevation", dao::ColumnType::double_float, 0},
                        {"LocationLookupTable", "SurveyLine", dao::ColumnType::text, 32},
                        {"Projection Defintion Table", "ID", dao::ColumnType::long_integer, 0},
                        {"Projection Defintion Table", "ZoneNumber", dao::ColumnType::long_integer, 0}};
  for (const Case& c : cases) {
    const auto columns = open_survey().database.columns(c.table);
    const auto column = std::find_if(columns.begin(), columns.end(),
                                     [&](const dao::Column& each) { return each.name == c.column; });
    ASSERT_NE(column, columns.end()) << c.table << "." << c.column;
    EXPECT_EQ(column->type, c.type) << c.table << "." << c.column;
    EXPECT_EQ(column->size, c.size) << c.table << "." << c.column;
  }
  EXPECT_EQ(open_survey().database.columns("ReadingsDataTable").size(), 23U);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(SurveyTest, Creating_where_no_file_can_be_made_fails_without_a_word) {
  session().database_file = folder.path("no_such_folder/survey.mdb");
  EXPECT_EQ(create_database(), -1);
  EXPECT_TRUE(interface.take_messages().empty());
}
