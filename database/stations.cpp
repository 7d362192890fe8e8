#include "database/stations.h"

#include <cmath>
#include <string>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "database/line_names.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

namespace Module_database {

namespace {

std::string station_criteria(std::string_view line, double station) {
  return "SurveyLine = " + dao::text_literal(line) + " AND Station = " + criterion_text(station);
}

void read_place(const dao::Recordset& row, StationRows& rows) {
  rows.MapX = row.get_double("MapX");
  rows.MapY = row.get_double("MapY");
  rows.Elevation = row.get_double("Elevation");
}

// Adds a row with the station's name and place and gives its ID.
std::int32_t add_row(dao::Recordset& recordset, std::string_view line, double station,
                     const StationRows& rows) {
  recordset.add_new();
  recordset.set_text("SurveyLine", line);
  recordset.set_double("Station", station);
  recordset.set_double("LocalX", rows.LocalX);
  recordset.set_double("LocalY", rows.LocalY);
  recordset.set_double("MapX", rows.MapX);
  recordset.set_double("MapY", rows.MapY);
  recordset.set_double("Elevation", rows.Elevation);
  recordset.update();
  recordset.go_to_added();
  return recordset.get_long("ID");
}

StationRows create_station(std::string_view line, double station, const GivenPlace* place) {
  const LocalPlace local = local_place(line, station);
  StationRows rows = find_location(local.x, local.y);
  if (rows.LocationID == no_row) {
    if (place != nullptr) {
      rows.MapX = place->MapX;
      rows.MapY = place->MapY;
      rows.Elevation = place->Elevation;
    }
    rows.LocationID = add_location(line, station, rows);
  }
  rows.StationID = add_row(open_survey().stations, line, station, rows);
  return rows;
}

}  // namespace

StationRows find_station(StationSearch mode, std::string_view line, double station, const GivenPlace* place) {
  dao::Recordset& stations = open_survey().stations;
  stations.find_first(station_criteria(line, station));
  if (stations.no_match()) {
    return mode == StationSearch::create ? create_station(line, station, place) : StationRows{};
  }
  StationRows rows = find_location(stations.get_double("LocalX"), stations.get_double("LocalY"));
  rows.StationID = stations.get_long("ID");
  read_place(stations, rows);
  return rows;
}

StationRows find_location(double local_x, double local_y) {
  StationRows rows;
  rows.LocalX = local_x;
  rows.LocalY = local_y;
  const std::string x = format_number(local_x, "0.0");
  const std::string y = format_number(local_y, "0.0");
  // The bounds say nothing new; they let the search go through the index of the sum, which changes from
  // station to station on lines along either axis. They are a little wide for the rounding of the sum.
  const double sum = numeric_value(x) + numeric_value(y);
  const std::string criteria = "LocalX + LocalY > " + criterion_text(sum - 1.001) +
                               " AND LocalX + LocalY < " + criterion_text(sum + 1.001) +
                               " AND Abs(LocalX - " + x + ") + Abs(LocalY - " + y + ") <1 ";
  dao::Recordset& locations = open_survey().locations;
  locations.find_first(criteria);
  if (locations.no_match()) {
    map_from_survey_grid(rows);
    return rows;
  }
  rows.LocationID = locations.get_long("ID");
  read_place(locations, rows);
  return rows;
}

bool has_own_map_place(const StationPlace& place) {
  constexpr double same_place = 2.0;  // m; stations share a location that is less than 1.1 m away
  StationRows grid;
  grid.LocalX = place.local_x;
  grid.LocalY = place.local_y;
  map_from_survey_grid(grid);
  const bool is_given = place.map_x != 0.0 || place.map_y != 0.0;  // heads without a place have zeros
  return is_given && std::abs(place.map_x - grid.MapX) + std::abs(place.map_y - grid.MapY) > same_place;
}

void map_from_survey_grid(StationRows& rows) {
  const SurveyHeaderValues& header = session().survey_header;
  const double angle = header.grid_azimuth * 3.1415926 / 180.0;
  const double dx = rows.LocalX - header.local_x_origin;
  const double dy = rows.LocalY - header.local_y_origin;
  rows.MapX = dx * std::cos(angle) + header.map_x_origin + dy * std::sin(angle);
  rows.MapY = header.map_y_origin - dx * std::sin(angle) + dy * std::cos(angle);
  rows.Elevation = 0.0;
}

LocalPlace local_place(std::string_view line, double station) {
  const double line_number = line_to_number(line);
  return line_direction(line) == LineDirection::local_east ? LocalPlace{line_number, station}
                                                           : LocalPlace{station, line_number};
}

std::int32_t add_location(std::string_view line, double station, const StationRows& rows) {
  return add_row(open_survey().locations, line, station, rows);
}

double line_to_number(std::string_view line) {
  const std::string_view text = trimmed(line);
  const double number = numeric_value(text);
  const char last = text.empty() ? '\0' : upper_case(text.substr(text.size() - 1)).front();
  return last == 'W' || last == 'S' ? -number : number;
}

double get_max_value(std::string_view column, std::string_view table) {
  const dao::Recordset row = open_survey().database.open_recordset("SELECT MAX(" + std::string(column) +
                                                                   ") AS Max FROM " + std::string(table));
  return row.eof() ? 0.0 : row.get_double("MAX");
}

}  // namespace Module_database
