#include "database/survey_database.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/debug_log.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/compacted_mark.h"
#include "database/schema.h"
#include "platform/dao/compact.h"
#include "platform/dao/sidecar_files.h"
#include "platform/files/safe_files.h"

namespace Module_database {

namespace {

/// One that has no room to gain is marked, so that the next opening takes it as it is.
void close_file(OpenSurvey& survey, const std::string& path) {
  const bool is_compact = survey.private_folder == nullptr && survey.database.is_compact();
  survey.database.close();
  survey = OpenSurvey{};
  if (is_compact) {
    mark_compacted(path);
  }
}

}  // namespace

OpenSurvey& open_survey() {
  static OpenSurvey survey;
  return survey;
}

int create_database() {
  Module_debug::write_debug(1, "create_database " + session().database_file);
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
  open(survey.sites, "SELECT * FROM SitesTable");
  open(survey.reading_facts, "SELECT * FROM ReadingFactsTable");
  survey.has_facts = !survey.reading_facts.eof();
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
  survey.sites.close();
  survey.reading_facts.close();
}

int close_database() {
  if (!session().database_open) {
    return 0;
  }
  Module_debug::write_debug(1, "close_database");
  return trap_errors("An error occurred while closing database: ", [] {
    close_recordsets();
    close_file(open_survey(), session().database_file);
    session().database_open = false;
  });
}

bool survey_is_read_only() { return open_survey().private_folder != nullptr; }

ReadOnlySurvey::ReadOnlySurvey()
    : dao::Error(
          "The survey is open read-only, because its file or folder can't be written; \"Save Database As\" "
          "makes a copy that can be changed.") {}

void require_writable() {
  if (survey_is_read_only()) {
    throw ReadOnlySurvey();
  }
}

std::string working_file() {
  return survey_is_read_only() ? open_survey().private_copy : session().database_file;
}

void settle_survey() {
  OpenSurvey& survey = open_survey();
  if (survey.database.is_open() && survey.database.settle_log()) {
    survey.changes_settled = survey.database.change_count();
  }
}

void settle_idle_survey() {
  OpenSurvey& survey = open_survey();
  if (!survey.database.is_open() || survey.database.change_count() == survey.changes_settled) {
    return;
  }
  if (survey.database.change_count() == survey.changes_seen) {
    settle_survey();
  }
  survey.changes_seen = survey.database.change_count();
}

void copy_survey_to(const std::string& path) {
  const std::string fresh = path + ".writing";
  dao::clear_place(path);
  dao::remove_database_file(fresh);
  open_survey().database.copy_to(fresh);
  try {
    safe_files::move_into_place(fresh, path);
  } catch (const std::runtime_error&) {
    dao::remove_database_file(fresh);
    throw;
  }
}

SurveySetAside::SurveySetAside()
    : survey_(std::exchange(open_survey(), {})),
      file_(session().database_file),
      was_open_(std::exchange(session().database_open, false)),
      data_changed_(session().data_changed) {}

SurveySetAside::~SurveySetAside() {
  if (comes_back_) {
    open_survey() = std::move(survey_);
    session().database_file = file_;
    session().database_open = was_open_;
    session().data_changed = data_changed_;
  }
}

void SurveySetAside::let_go() {
  comes_back_ = false;
  if (was_open_) {
    close_file(survey_, file_);
  }
}

std::string backup_path(const std::string& path) {
  const std::size_t point = upper_case(path).find(".MDB");
  return (point == std::string::npos ? std::string() : path.substr(0, point + 1)) + "bak";
}

void reset_module() {
  close_recordsets();
  open_survey().database = {};
  open_survey() = OpenSurvey{};
  session().database_open = false;
}

}  // namespace Module_database
