#include "survey_edits/places.h"

#include <map>

#include "core/number_text.h"
#include "database/sound_rows.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"

namespace Module_survey_edits {

namespace {

using Module_database::open_survey;

/// Makes a location's row current. @return false if there is none
bool find_row(std::int32_t LocationID) {
  dao::Recordset& locations = open_survey().locations;
  locations.find_first("ID = " + format_number(LocationID, "0"));
  return !locations.no_match();
}

}  // namespace

std::vector<LocationUse> uses_of(const std::set<std::int32_t>& locations) {
  std::map<std::int32_t, LocationUse> uses;
  const auto note = [&](std::int32_t ID, const std::string& line, double station) {
    if (locations.contains(ID)) {
      uses.try_emplace(ID, LocationUse{ID, line, station});
    }
  };
  if (locations.empty()) {
    return {};
  }
  for (const Module_database::ListedStation& station : Module_database::listed_stations()) {
    note(Module_database::find_location(station.place.local_x, station.place.local_y).LocationID,
         station.line, station.station);
  }
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT DISTINCT LocationID,LineNumber,Station FROM ReadingsDataTable");
  Module_database::for_each_sound_row(rows, [&](const dao::Recordset& row) {
    note(row.get_long("LocationID"), row.get_text("LineNumber"), row.get_double("Station"));
  });
  std::vector<LocationUse> found;
  for (auto& [ID, use] : uses) {
    found.push_back(std::move(use));
  }
  return found;
}

bool has_name_of_a_station(std::int32_t LocationID) {
  if (!find_row(LocationID)) {
    return false;
  }
  const dao::Recordset& row = open_survey().locations;
  return Module_database::find_station(Module_database::StationSearch::look_up, row.get_text("SurveyLine"),
                                       row.get_double("Station"))
             .StationID != Module_database::no_row;
}

void name_location(const LocationUse& use) {
  if (find_row(use.LocationID)) {
    dao::Recordset& row = open_survey().locations;
    row.edit();
    row.set_text("SurveyLine", use.line);
    row.set_double("Station", use.station);
    row.update();
  }
}

}  // namespace Module_survey_edits
