#include "survey_edits/taken_out.h"

#include "core/number_text.h"
#include "database/survey_database.h"

namespace Module_survey_edits {

using Module_database::open_survey;

namespace {

void copy_rows(std::string_view table, std::string_view columns, const std::string& to,
               const std::string& criteria) {
  open_survey().database.execute("INSERT INTO " + to + " SELECT " + std::string(columns) + " FROM " +
                                 std::string(table) + " WHERE " + criteria);
}

}  // namespace

std::string kept(std::string_view table) { return "[Kept " + std::string(table) + "]"; }

std::string in_kept(std::string_view table) { return " IN (SELECT ID FROM " + kept(table) + ")"; }

std::string with_ID(std::int32_t ID, std::string_view column) {
  return std::string(column) + " = " + format_number(ID, "0");
}

void prepare_shelf() {
  Module_database::TakenOut& taken_out = open_survey().taken_out;
  if (!taken_out.folder) {
    auto folder = std::make_unique<PrivateFolder>();
    open_survey().database.add_shelf((folder->path() / "taken_out").string());
    taken_out.folder = std::move(folder);
  }
}

void clear_shelf() {
  dao::Database& database = open_survey().database;
  for (const std::string_view table : changed_tables) {
    database.shelve("Kept " + std::string(table), table);
  }
  database.shelve("Left ReadingsDataTable", "ReadingsDataTable");
}

void keep_rows(std::string_view table, const std::string& criteria) {
  copy_rows(table, "*", kept(table), criteria);
}

void keep_readings(const std::string& criteria) {
  keep_rows("ReadingFactsTable", "ReadingID IN (SELECT ID FROM ReadingsDataTable WHERE " + criteria + ")");
  keep_rows("ReadingsDataTable", criteria);
}

void note_left(const std::string& criteria) {
  copy_rows("ReadingsDataTable",
            "ID,FileID,StationID,ResOffset,PhaseOffset,UseReading,UseResistivity,UsePhase,NumFrequencies,"
            "MaskBinary",
            std::string(left_readings), criteria);
}

void take_out_rows(std::string_view table, const std::string& criteria) {
  keep_rows(table, criteria);
  open_survey().database.execute("DELETE FROM " + std::string(table) + " WHERE " + criteria);
}

void can_come_back() {
  open_survey().taken_out.can_come_back = true;
  open_survey().taken_out.changes = open_survey().database.change_count();
}

void forget_taken_out() {
  if (open_survey().taken_out.can_come_back) {
    open_survey().taken_out.can_come_back = false;
    clear_shelf();
  }
}

bool unchanged_since() { return open_survey().taken_out.changes == open_survey().database.change_count(); }

ShelfAsItIs::ShelfAsItIs()
    : can_come_back_(open_survey().taken_out.can_come_back), unchanged_(unchanged_since()) {}

void ShelfAsItIs::stays() const {
  open_survey().taken_out.can_come_back = can_come_back_;
  if (unchanged_) {  // a transaction that was rolled back counts as a change
    open_survey().taken_out.changes = open_survey().database.change_count();
  }
  requery_survey();
}

void requery_survey() {
  Module_database::OpenSurvey& survey = open_survey();
  for (dao::Recordset* const rows : {&survey.files, &survey.stations, &survey.locations, &survey.sites,
                                     &survey.readings, &survey.reading_facts}) {
    rows->requery();
  }
}

}  // namespace Module_survey_edits
