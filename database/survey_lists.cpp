#include "database/survey_lists.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "core/text_fields.h"
#include "database/sites.h"
#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"

namespace Module_database {

namespace {

struct Spelling {
  std::int32_t ID = 0;  // of the row that it is from
  std::string line;
  std::size_t place = 0;  // among the lines
};

using Spellings = std::map<std::string, Spelling>;  // by the line as comparisons see it

void note_spelling(Spellings& spellings, const ListedStation& station) {
  const auto [entry, is_new] = spellings.try_emplace(dao::folded_text(station.line),
                                                     Spelling{station.ID, station.line, spellings.size()});
  if (!is_new && station.ID < entry->second.ID) {
    entry->second.ID = station.ID;
    entry->second.line = station.line;
  }
}

ListedStation station_of(const dao::Recordset& row) {
  return {row.get_long("ID"),
          row.get_text("SurveyLine"),
          row.get_double("Station"),
          {row.get_double("LocalX"), row.get_double("LocalY"), row.get_double("MapX"), row.get_double("MapY"),
           row.get_double("Elevation")},
          {}};
}

/// Gives each station the name of its site.
void add_names(std::vector<ListedStation>& stations) {
  std::map<std::pair<std::string, double>, std::string> names;
  for (const Site& site : listed_sites()) {
    if (std::string name = shown_name(site); !name.empty()) {
      names.emplace(std::pair(dao::folded_text(site.line), site.station), std::move(name));
    }
  }
  if (names.empty()) {
    return;
  }
  for (ListedStation& station : stations) {
    const auto found = names.find({dao::folded_text(station.line), station.station});
    if (found != names.end()) {
      station.name = found->second;
    }
  }
}

/// The values of a column in the files and in the readings, each once.
template <class Value, class Read>
std::set<Value> values_of(const std::string& column, Read read) {
  std::set<Value> values;
  for (const char* const table : {"FileTable", "ReadingsDataTable"}) {
    dao::Recordset rows =
        open_survey().database.open_recordset("SELECT DISTINCT " + column + " FROM " + table);
    for_each_sound_row(rows, [&](const dao::Recordset& row) { values.insert(read(row)); });
  }
  return values;
}

}  // namespace

std::vector<ListedStation> listed_stations() {
  std::vector<ListedStation> stations;
  Spellings spellings;
  // By the line's text as well: lines of the same number stay together.
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT * FROM StationsTable ORDER BY Val(SurveyLine),SurveyLine,Station");
  for_each_sound_row(rows, [&](const dao::Recordset& row) {
    stations.push_back(station_of(row));
    note_spelling(spellings, stations.back());
  });
  const auto spelling_of = [&](const ListedStation& station) -> const Spelling& {
    return spellings.at(dao::folded_text(station.line));
  };
  // The order of the rows knows no case of ASCII letters only.
  std::ranges::stable_sort(stations, [&](const ListedStation& a, const ListedStation& b) {
    const std::size_t place_a = spelling_of(a).place;
    const std::size_t place_b = spelling_of(b).place;
    return place_a != place_b ? place_a < place_b : a.station < b.station;
  });
  for (ListedStation& station : stations) {
    station.line = spelling_of(station).line;
  }
  add_names(stations);
  return stations;
}

std::vector<ListedStation> stations_with_readings(std::string_view line) {
  const std::string name(line);
  // All reductions that there are: with them the search goes through the index of a line's readings.
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT * FROM StationsTable WHERE SurveyLine = " + dao::text_literal(name) +
      " AND Station IN (SELECT Station FROM ReadingsDataTable WHERE LineNumber = " + dao::text_literal(name) +
      " AND (ReductionType = 0 OR ReductionType = 1 OR ReductionType = 2)) ORDER BY Station");
  std::vector<ListedStation> stations;
  for_each_sound_row(rows, [&](const dao::Recordset& row) {
    ListedStation station = station_of(row);
    if (stations.empty() || station.station > stations.back().station) {  // lines of two spellings: two rows
      stations.push_back(std::move(station));
    }
  });
  return stations;
}

std::vector<std::string> damaged_stations() {
  std::vector<std::string> faults;
  dao::Recordset rows = open_survey().database.open_recordset("SELECT * FROM StationsTable");
  for (; !rows.eof(); rows.move_next()) {
    try {
      static_cast<void>(station_of(rows));
    } catch (const dao::Error& fault) {
      faults.emplace_back(fault.what());
    }
  }
  return faults;
}

std::string spelled_line(std::string_view line) {
  if (!is_valid_utf8(line)) {  // no row has such a name, and no search takes it
    return std::string(line);
  }
  // The search goes through the index of a line's stations and knows no case of letters.
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT ID,SurveyLine FROM StationsTable WHERE SurveyLine = " + dao::text_literal(line));
  Spelling best{0, std::string(line), 0};
  for (; !rows.eof(); rows.move_next()) {
    const std::int32_t ID = rows.get_long("ID");
    if (best.ID == 0 || ID < best.ID) {
      best = {ID, rows.get_text("SurveyLine"), 0};
    }
  }
  return best.line;
}

bool has_readings_or_files(std::string_view line) {
  if (!is_valid_utf8(line)) {
    return false;
  }
  const std::string of_line = " WHERE LineNumber = " + dao::text_literal(line);
  for (const char* const table : {"FileTable", "ReadingsDataTable"}) {
    if (!open_survey()
             .database.open_recordset(std::string("SELECT DISTINCT LineNumber FROM ") + table + of_line)
             .eof()) {
      return true;
    }
  }
  return false;
}

std::vector<std::string> listed_lines() {
  std::map<std::string, std::string> spelled;  // by the line as comparisons see it
  for (const ListedStation& station : listed_stations()) {
    spelled.emplace(dao::folded_text(station.line), station.line);
  }
  std::map<std::string, std::string> lines;
  for (const std::string& line :
       values_of<std::string>("LineNumber", [](const auto& row) { return row.get_text("LineNumber"); })) {
    const std::string folded = dao::folded_text(line);
    const auto known = spelled.find(folded);
    lines.emplace(folded, known == spelled.end() ? line : known->second);
  }
  std::vector<std::string> list;
  list.reserve(lines.size());
  for (auto& [folded, line] : lines) {
    list.push_back(std::move(line));
  }
  return list;
}

std::vector<std::int32_t> listed_reference_types() {
  const auto types =
      values_of<std::int32_t>("ReferenceType", [](const auto& row) { return row.get_long("ReferenceType"); });
  return {types.begin(), types.end()};
}

std::vector<float> listed_dipoles() {
  const auto dipoles =
      values_of<float>("DipoleLength", [](const auto& row) { return row.get_single("DipoleLength"); });
  return {dipoles.begin(), dipoles.end()};
}

}  // namespace Module_database
