#include "database/survey_database.h"

#include <string_view>

#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/schema.h"

namespace Module_database {

OpenSurvey& open_survey() {
  static OpenSurvey survey;
  return survey;
}

int create_database() {
  dao::Database database;
  try {
    database = dao::Database::create(session().database_file, ";LANGID=0x0409;CP=1252;COUNTRY=0");
  } catch (const dao::Error&) {
    return -1;  // nothing was created and nothing is reported
  }
  return trap_errors("An error occured while creating the database: ", [&] {
    dao::Transaction transaction(database);
    for (const TableSchema& table : survey_tables()) {
      create_table(database, table);
    }
    create_search_indexes(database);
    transaction.commit();
    database.close();
  });
}

void open_recordsets() {
  OpenSurvey& survey = open_survey();
  const auto open = [&](dao::Recordset& recordset, std::string_view statement) {
    recordset = survey.database.open_recordset(statement);
  };
  open(survey.survey_header, "SELECT * FROM SurveyHeader");
  open(survey.stations, "SELECT * FROM StationsTable ORDER BY Val(SurveyLine),Station");
  open(survey.locations, "SELECT * FROM LocationLookupTable");
  open(survey.mask_definitions, "SELECT * FROM MaskDefinitionTable");
  open(survey.files, "SELECT * FROM FileTable");
  open(survey.readings, "SELECT * FROM ReadingsDataTable");
  open(survey.frequency_lists, "SELECT * FROM ReadingsFrequencyTable");
  open(survey.projections, "SELECT * FROM [Projection Defintion Table]");
}

void close_recordsets() {
  OpenSurvey& survey = open_survey();
  survey.survey_header.close();
  survey.mask_definitions.close();
  survey.stations.close();
  survey.locations.close();
  survey.files.close();
  survey.readings.close();
  survey.frequency_lists.close();
  survey.projections.close();
}

int close_database() {
  if (!session().database_open) {
    return 0;
  }
  return trap_errors("An error occurred while closing database: ", [] {
    close_recordsets();
    open_survey().database.close();
    open_survey().files_in_use = {};
    session().database_open = false;
  });
}

std::string backup_path(const std::string& path) {
  const std::size_t point = upper_case(path).find(".MDB");
  return (point == std::string::npos ? std::string() : path.substr(0, point + 1)) + "bak";
}

void reset_module() {
  open_survey() = OpenSurvey{};
  session().database_open = false;
}

}  // namespace Module_database
