#include "survey_edits/returning_rows.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "core/number_text.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"
#include "reduction/derived_rows.h"
#include "survey_edits/taken_out.h"

namespace Module_survey_edits {

namespace {

using Module_database::open_survey;

dao::Recordset rows_of(const std::string& columns_and_source) {
  return open_survey().database.open_recordset("SELECT " + columns_and_source);
}

void run(const std::string& statement) { open_survey().database.execute(statement); }

std::set<std::int32_t> numbers(const std::string& column, const std::string& source) {
  std::set<std::int32_t> found;
  std::string distinct = "DISTINCT ";
  distinct.append(column).append(" FROM ").append(source);
  for (dao::Recordset rows = rows_of(distinct); !rows.eof(); rows.move_next()) {
    found.insert(rows.get_long(column));
  }
  return found;
}

// ---- files that were imported again

/// A file that has lost readings, with its rows on the shelf.
struct TakenFile {
  std::string name;
  std::set<std::int32_t> IDs;
};

using FileName = std::pair<std::string, double>;  // folded, day

FileName name_in(const dao::Recordset& row) {
  return {dao::folded_text(row.get_text("SurveyFile")), std::floor(row.get_date("DateCollected"))};
}

std::map<FileName, TakenFile> taken_files() {
  std::map<FileName, TakenFile> files;
  for (dao::Recordset rows = rows_of("* FROM " + kept("FileTable")); !rows.eof(); rows.move_next()) {
    TakenFile& file = files[name_in(rows)];
    file.name = rows.get_text("SurveyFile");
    file.IDs.insert(rows.get_long("ID"));
  }
  return files;
}

/// The readings of a file, by ID and station, in the survey or as the removal has left them.
std::set<std::pair<std::int32_t, std::int32_t>> readings_of(const TakenFile& file,
                                                            const std::string& source) {
  std::set<std::pair<std::int32_t, std::int32_t>> readings;
  for (const std::int32_t ID : file.IDs) {
    for (dao::Recordset rows = rows_of("ID,StationID FROM " + source + " WHERE " + with_ID(ID, "FileID"));
         !rows.eof(); rows.move_next()) {
      readings.emplace(rows.get_long("ID"), rows.get_long("StationID"));
    }
  }
  return readings;
}

/// Files of the survey now, with the numbers of their rows.
std::map<FileName, std::set<std::int32_t>> files_now() {
  std::map<FileName, std::set<std::int32_t>> files;
  for (dao::Recordset rows = rows_of("ID,SurveyFile,DateCollected FROM FileTable"); !rows.eof();
       rows.move_next()) {
    files[name_in(rows)].insert(rows.get_long("ID"));
  }
  return files;
}

bool was_imported_again(const FileName& name, const TakenFile& file,
                        const std::map<FileName, std::set<std::int32_t>>& now) {
  const auto same = now.find(name);
  if (same == now.end()) {
    return false;
  }
  return !std::ranges::includes(file.IDs, same->second) ||
         readings_of(file, "ReadingsDataTable") != readings_of(file, std::string(left_readings));
}

void drop_file(const TakenFile& file) {
  for (const std::int32_t ID : file.IDs) {
    const std::string of_file = with_ID(ID, "FileID");
    run("DELETE FROM " + kept("ReadingFactsTable") + " WHERE ReadingID IN (SELECT ID FROM " +
        kept("ReadingsDataTable") + " WHERE " + of_file + ")");
    run("DELETE FROM " + kept("ReadingsDataTable") + " WHERE " + of_file);
    run("DELETE FROM " + kept("FileTable") + " WHERE " + with_ID(ID));
  }
}

/// Stations that have lost their last reading on the shelf don't come back as empty ones.
void drop_stations(const std::set<std::int32_t>& stations) {
  for (const std::int32_t ID : stations) {
    run("DELETE FROM " + kept("ReadingFactsTable") + " WHERE ReadingID IN (SELECT ID FROM " +
        kept("ReadingsDataTable") + " WHERE " + with_ID(ID, "StationID") + ")");
    run("DELETE FROM " + kept("ReadingsDataTable") + " WHERE " + with_ID(ID, "StationID"));
    dao::Recordset row = rows_of("* FROM " + kept("StationsTable") + " WHERE " + with_ID(ID));
    if (!row.eof()) {
      run("DELETE FROM " + kept("SitesTable") +
          " WHERE SurveyLine = " + dao::text_literal(row.get_text("SurveyLine")) +
          " AND Station = " + criterion_text(row.get_double("Station")));
      row.delete_row();
    }
  }
}

// ---- numbers

/// What on the shelf refers to the rows of a table.
using Reference = std::pair<std::string_view, std::string_view>;  // table, column

/// Gives these rows on the shelf new numbers.
void renumber(std::string_view table, const std::vector<Reference>& references,
              const std::vector<std::int32_t>& taken) {
  const auto highest = [](const std::string& source, std::string_view column) {
    return static_cast<std::int32_t>(std::max(Module_database::get_max_value(column, source), 0.0));
  };
  std::int32_t next = std::max(highest(std::string(table), "ID"), highest(kept(table), "ID"));
  if (table == "FileTable") {  // readings may have lost the row of their file
    next = std::max(
        {next, highest("ReadingsDataTable", "FileID"), highest(kept("ReadingsDataTable"), "FileID")});
  }
  for (const std::int32_t ID : taken) {
    ++next;
    run("UPDATE " + kept(table) + " SET " + with_ID(next) + " WHERE " + with_ID(ID));
    for (const auto& [referring, column] : references) {
      run("UPDATE " + kept(referring) + " SET " + with_ID(next, column) + " WHERE " + with_ID(ID, column));
    }
  }
}

/// The numbers of rows on the shelf that the survey has now, too.
std::vector<std::int32_t> taken_numbers(std::string_view table) {
  const auto taken = numbers("ID", kept(table) + " WHERE ID IN (SELECT ID FROM " + std::string(table) + ")");
  return {taken.begin(), taken.end()};
}

/// The first row of a file is the one that its readings name: if its number is taken, all rows get new ones
/// in their order.
std::vector<std::int32_t> taken_file_numbers() {
  std::vector<std::int32_t> taken;
  for (const auto& [name, file] : taken_files()) {
    const auto is_taken = [&, file_name = name](std::int32_t ID) {
      const dao::Recordset row = rows_of("* FROM FileTable WHERE " + with_ID(ID));
      return !row.eof() && name_in(row) != file_name;
    };
    const bool all = is_taken(*file.IDs.begin());
    std::ranges::copy_if(file.IDs, std::back_inserter(taken),
                         [&](std::int32_t ID) { return all || is_taken(ID); });
  }
  // Readings that had lost the row of their file must not come to the file that has its number now.
  const std::string without_row = kept("ReadingsDataTable") + " WHERE FileID > 0 AND FileID NOT" +
                                  in_kept("FileTable") + " AND FileID IN (SELECT ID FROM FileTable)";
  std::ranges::copy(numbers("FileID", without_row), std::back_inserter(taken));
  return taken;
}

std::vector<std::int32_t> taken_location_numbers() {
  std::vector<std::int32_t> taken = taken_numbers("LocationLookupTable");
  std::erase_if(taken, [](std::int32_t ID) {
    const dao::Recordset row = rows_of("* FROM LocationLookupTable WHERE " + with_ID(ID));
    const dao::Recordset kept_row =
        rows_of("* FROM " + kept("LocationLookupTable") + " WHERE " + with_ID(ID));
    return row.get_double("LocalX") == kept_row.get_double("LocalX") &&
           row.get_double("LocalY") == kept_row.get_double("LocalY");
  });
  return taken;
}

/// Points readings on the shelf at the row that the survey has in place of one on the shelf, which goes.
void use_row_of_survey(dao::Recordset& kept_row, std::string_view column, std::int32_t ID) {
  run("UPDATE " + kept("ReadingsDataTable") + " SET " + with_ID(ID, column) + " WHERE " +
      with_ID(kept_row.get_long("ID"), column));
  kept_row.delete_row();
}

void use_stations_of_survey() {
  for (dao::Recordset rows = rows_of("* FROM " + kept("StationsTable")); !rows.eof(); rows.move_next()) {
    const auto found = Module_database::find_station(Module_database::StationSearch::look_up,
                                                     rows.get_text("SurveyLine"), rows.get_double("Station"));
    if (found.StationID != Module_database::no_row) {
      use_row_of_survey(rows, "StationID", found.StationID);
    }
  }
}

/// The first file of a station names its site, and that is the one on the shelf, unless it was imported
/// again.
void exchange_sites() {
  for (dao::Recordset rows = rows_of("* FROM " + kept("SitesTable")); !rows.eof(); rows.move_next()) {
    const auto now = Module_database::find_site(rows.get_text("SurveyLine"), rows.get_double("Station"));
    if (now && dao::folded_text(now->SurveyFile) == dao::folded_text(rows.get_text("SurveyFile"))) {
      rows.delete_row();
    } else if (now) {
      run("DELETE FROM SitesTable WHERE SurveyLine = " + dao::text_literal(now->line) +
          " AND Station = " + criterion_text(now->station));
    }
  }
  renumber("SitesTable", {}, taken_numbers("SitesTable"));
}

void use_locations_of_survey() {
  for (dao::Recordset rows = rows_of("* FROM " + kept("LocationLookupTable")); !rows.eof();
       rows.move_next()) {
    const auto found = Module_database::find_location(rows.get_double("LocalX"), rows.get_double("LocalY"));
    if (found.LocationID != Module_database::no_row) {
      use_row_of_survey(rows, "LocationID", found.LocationID);
    }
  }
}

// ---- derived rows

bool same_settings(const dao::Recordset& one, const dao::Recordset& other) {
  const auto same_bit = [&](std::string_view field) { return one.get_bit(field) == other.get_bit(field); };
  return one.get_long("NumFrequencies") == other.get_long("NumFrequencies") &&
         one.get_single("ResOffset") == other.get_single("ResOffset") &&
         one.get_single("PhaseOffset") == other.get_single("PhaseOffset") && same_bit("UseReading") &&
         same_bit("UseResistivity") && same_bit("UsePhase") &&
         one.get_binary("MaskBinary") == other.get_binary("MaskBinary");
}

/// Whether the row is as the removal has left it.
bool is_as_left(const dao::Recordset& row) {
  const dao::Recordset left = rows_of("* FROM " + std::string(left_readings) + " WHERE " +
                                      with_ID(row.get_long("ID")) + " AND FileID < 0");
  return !left.eof() && left.get_long("StationID") == row.get_long("StationID") && same_settings(left, row);
}

void drop_derived(dao::Recordset& kept_row) {
  run("DELETE FROM " + kept("ReadingFactsTable") + " WHERE " + with_ID(kept_row.get_long("ID"), "ReadingID"));
  kept_row.delete_row();
}

}  // namespace

std::vector<std::string> drop_files_imported_again() {
  const std::string raw = kept("ReadingsDataTable") + " WHERE FileID > 0";
  const std::set<std::int32_t> before = numbers("StationID", raw);
  const auto now = files_now();
  std::vector<std::string> names;
  for (const auto& [name, file] : taken_files()) {
    if (was_imported_again(name, file, now)) {
      drop_file(file);
      names.push_back(file.name);
    }
  }
  const std::set<std::int32_t> after = numbers("StationID", raw);
  std::set<std::int32_t> emptied;
  std::ranges::set_difference(before, after, std::inserter(emptied, emptied.end()));
  drop_stations(emptied);
  return names;
}

void fit_to_survey() {
  renumber("FileTable", {{"ReadingsDataTable", "FileID"}}, taken_file_numbers());
  renumber("StationsTable", {{"ReadingsDataTable", "StationID"}}, taken_numbers("StationsTable"));
  renumber("LocationLookupTable", {{"ReadingsDataTable", "LocationID"}}, taken_location_numbers());
  use_stations_of_survey();
  use_locations_of_survey();
  exchange_sites();
}

void exchange_derived_rows() {
  for (dao::Recordset rows = rows_of("* FROM " + kept("ReadingsDataTable") + " WHERE FileID < 0");
       !rows.eof(); rows.move_next()) {
    const std::string criteria = Module_averaged_data::key_criteria(
        "FileID<0", rows.get_long("StationID"), "ReductionType=" + plain_text(rows.get_long("ReductionType")),
        Module_averaged_data::key_of_row(rows));
    const dao::Recordset now = rows_of("* FROM ReadingsDataTable WHERE " + criteria);
    if (now.eof()) {
      continue;
    }
    if (is_as_left(now)) {
      Module_database::delete_readings(with_ID(now.get_long("ID")));
    } else {
      drop_derived(rows);
    }
  }
  renumber("ReadingsDataTable", {{"ReadingFactsTable", "ReadingID"}}, taken_numbers("ReadingsDataTable"));
  renumber("ReadingFactsTable", {}, taken_numbers("ReadingFactsTable"));
}

std::vector<Module_database::ReadingKey> keys_on_shelf() {
  std::vector<Module_database::ReadingKey> keys;
  dao::Recordset rows =
      rows_of("DISTINCT LineNumber,Station,ReferenceType,SampleRate,DataType,DipoleLength FROM " +
              kept("ReadingsDataTable"));
  for (; !rows.eof(); rows.move_next()) {
    keys.push_back(Module_averaged_data::key_of_row(rows));
  }
  return keys;
}

}  // namespace Module_survey_edits
