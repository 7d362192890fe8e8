#include "survey_edits/rename.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <set>
#include <utility>
#include <vector>

#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "database/line_names.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"
#include "survey_edits/places.h"
#include "survey_edits/taken_out.h"

namespace Module_survey_edits {

namespace {

using Module_database::open_survey;
using Module_database::StationRows;

constexpr std::string_view rename_failed = "An error occurred while renaming: ";

// m: more than the way around the earth, and nine digits, which the files of other programs have room for.
constexpr double largest_number = 999999999.0;

/// Which tables name stations, and the columns of line and station.
struct NamingTable {
  std::string_view table;
  std::string_view line;
};
constexpr std::array<NamingTable, 5> naming_tables{{{"StationsTable", "SurveyLine"},
                                                    {"LocationLookupTable", "SurveyLine"},
                                                    {"SitesTable", "SurveyLine"},
                                                    {"FileTable", "LineNumber"},
                                                    {"ReadingsDataTable", "LineNumber"}}};

bool same_line(std::string_view one, std::string_view other) {
  return dao::folded_text(one) == dao::folded_text(other);
}

std::string of_line(const NamingTable& names, std::string_view line) {
  return std::string(names.line) + " = " + dao::text_literal(line);
}

std::string of_station(const NamingTable& names, std::string_view line, double station) {
  return of_line(names, line) + " AND Station = " + criterion_text(station);
}

template <class Criteria>
bool is_named(const Criteria& criteria_in) {
  return std::ranges::any_of(naming_tables, [&](const NamingTable& names) {
    return !open_survey()
                .database
                .open_recordset("SELECT ID FROM " + std::string(names.table) + " WHERE " + criteria_in(names))
                .eof();
  });
}

bool has_line(std::string_view line) {
  return is_named([&](const NamingTable& names) { return of_line(names, line); });
}

bool has_station(std::string_view line, double station) {
  return is_named([&](const NamingTable& names) { return of_station(names, line, station); });
}

/// A station that is renamed, where it was.
struct MovedStation {
  std::int32_t ID = 0;
  std::string line;
  double station = 0.0;
  StationRows place;           // that its row has; LocationID of the location there
  bool map_from_grid = false;  // its place on the map is computed from the local one
};

MovedStation moved_station(const Module_database::ListedStation& listed, std::string line, double station) {
  MovedStation moved{listed.ID, std::move(line), station, {}, false};
  moved.place = Module_database::find_location(listed.place.local_x, listed.place.local_y);
  moved.place.MapX = listed.place.map_x;
  moved.place.MapY = listed.place.map_y;
  moved.place.Elevation = listed.place.elevation;
  StationRows grid = moved.place;
  Module_database::map_from_survey_grid(grid);
  constexpr double same_place = 1.0;  // m, of two places that are one location
  moved.map_from_grid =
      std::abs(grid.MapX - listed.place.map_x) + std::abs(grid.MapY - listed.place.map_y) < same_place;
  return moved;
}

void write_station(const MovedStation& moved) {
  dao::Recordset& stations = open_survey().stations;
  stations.find_first(with_ID(moved.ID));
  stations.edit();
  stations.set_text("SurveyLine", moved.line);
  stations.set_double("Station", moved.station);
  stations.set_double("LocalX", moved.place.LocalX);
  stations.set_double("LocalY", moved.place.LocalY);
  stations.set_double("MapX", moved.place.MapX);
  stations.set_double("MapY", moved.place.MapY);
  stations.set_double("Elevation", moved.place.Elevation);
  stations.update();
}

/// Moves stations to the places of their new names. Locations that no station has any more go; one that
/// others have stays theirs.
void move_stations(std::vector<MovedStation> moved) {
  std::set<std::int32_t> left;
  for (MovedStation& station : moved) {
    left.insert(station.place.LocationID);
    const Module_database::LocalPlace local = Module_database::local_place(station.line, station.station);
    station.place.LocalX = local.x;
    station.place.LocalY = local.y;
    if (station.map_from_grid) {
      const double elevation = station.place.Elevation;
      Module_database::map_from_survey_grid(station.place);
      station.place.Elevation = elevation;
    }
    write_station(station);
    // The readings leave the location, too, before it is looked for who has it.
    open_survey().database.execute("UPDATE ReadingsDataTable SET " +
                                   with_ID(Module_database::no_row, "LocationID") + " WHERE " +
                                   with_ID(station.ID, "StationID"));
  }
  left.erase(Module_database::no_row);
  std::set<std::int32_t> unused = left;
  for (const LocationUse& use : uses_of(left)) {
    unused.erase(use.LocationID);
    name_location(use);
  }
  for (const std::int32_t ID : unused) {
    open_survey().database.execute("DELETE FROM LocationLookupTable WHERE " + with_ID(ID));
  }
  requery_survey();
  for (MovedStation& station : moved) {
    const StationRows found = Module_database::find_location(station.place.LocalX, station.place.LocalY);
    const bool is_known = found.LocationID != Module_database::no_row;
    if (is_known && station.map_from_grid) {
      station.place = found;
      write_station(station);
    }
    const std::int32_t ID = is_known
                                ? found.LocationID
                                : Module_database::add_location(station.line, station.station, station.place);
    open_survey().database.execute("UPDATE ReadingsDataTable SET " + with_ID(ID, "LocationID") + " WHERE " +
                                   with_ID(station.ID, "StationID"));
  }
}

/// Writes a new name wherever rows have the old one; readings go by their station as well.
template <class Assignment, class Criteria>
void write_names(const Assignment& assignment_in, const Criteria& criteria_in,
                 const std::vector<MovedStation>& moved) {
  dao::Database& database = open_survey().database;
  for (const NamingTable& names : naming_tables) {
    database.execute("UPDATE " + std::string(names.table) + " SET " + assignment_in(names) + " WHERE " +
                     criteria_in(names));
  }
  for (const MovedStation& station : moved) {
    database.execute("UPDATE ReadingsDataTable SET " + assignment_in(naming_tables.back()) + " WHERE " +
                     with_ID(station.ID, "StationID"));
  }
}

/// @param renamed  what is renamed, in words
/// @param write    writes the names, and gives the stations that move
int rename_in_transaction(const std::string& renamed,
                          const std::function<std::vector<MovedStation>()>& write) {
  const BusyPointer busy;
  const ShelfAsItIs shelf;
  const int result = trap_errors(rename_failed, [&] {
    Module_database::require_writable();
    dao::Transaction transaction(open_survey().database);
    const std::vector<MovedStation> moved = write();
    requery_survey();
    move_stations(moved);
    forget_taken_out();
    transaction.commit();
  });
  if (result != 0) {
    shelf.stays();
    return result;
  }
  Module_Brenlox::clear_undo();
  session().data_changed = true;
  requery_survey();
  Module_database::settle_survey();
  Module_Brenlox::tell_finished(renamed + ", stored in " + session().database_file, session().database_file);
  return result;
}

}  // namespace

NewLine new_line_name(std::string_view line, std::string_view typed) {
  Module_database::LineName name;
  std::string fault = Module_database::line_fault(typed, Module_database::line_direction(line), name);
  if (!fault.empty()) {
    return {{}, std::move(fault)};
  }
  if (std::abs(name.number) > largest_number) {
    return {{}, "The line number must not be above " + plain_text(largest_number)};
  }
  if (same_line(name.text, line)) {
    const bool is_spelled_so = Module_database::spelled_line(line) == name.text;
    return {name.text, is_spelled_so ? "This is the line's name already" : ""};
  }
  return {name.text, has_line(name.text) ? "The survey has a line " + name.text + " already" : ""};
}

NewStation new_station_number(std::string_view line, double station, std::string_view typed) {
  if (!is_numeric(typed) || !std::isfinite(numeric_value(typed))) {
    return {0.0, "The station number is not valid"};
  }
  const double number = numeric_value(typed);
  if (std::abs(number) > largest_number) {
    return {0.0, "The station number must be from " + plain_text(-largest_number) + " to " +
                     plain_text(largest_number)};
  }
  if (number == station) {
    return {number, "This is the station's number already"};
  }
  return {number, has_station(line, number)
                      ? "Line " + std::string(line) + " has a station " + plain_text(number) + " already"
                      : ""};
}

int rename_line(std::string_view line, const std::string& to) {
  const std::string renamed = "Line " + std::string(line) + " is line " + to + " now";
  const int result = rename_in_transaction(renamed, [&] {
    std::vector<MovedStation> moved;
    for (const Module_database::ListedStation& listed : Module_database::listed_stations()) {
      if (same_line(listed.line, line)) {
        moved.push_back(moved_station(listed, to, listed.station));
      }
    }
    write_names([&](const NamingTable& names) { return of_line(names, to); },
                [&](const NamingTable& names) { return of_line(names, line); }, moved);
    return moved;
  });
  if (result == 0 && same_line(session().current_line, line)) {
    session().current_line = to;
  }
  return result;
}

int rename_station(std::string_view line, double station, double to) {
  const std::string renamed = "Station " + plain_text(station) + " of line " + std::string(line) +
                              " is station " + plain_text(to) + " now";
  const int result = rename_in_transaction(renamed, [&] {
    std::vector<MovedStation> moved;
    for (const Module_database::ListedStation& listed : Module_database::listed_stations()) {
      if (listed.station == station && same_line(listed.line, line)) {
        moved.push_back(moved_station(listed, listed.line, to));
      }
    }
    write_names([&](const NamingTable& /*names*/) { return "Station = " + criterion_text(to); },
                [&](const NamingTable& names) { return of_station(names, line, station); }, moved);
    return moved;
  });
  if (result == 0 && session().current_station == station && same_line(session().current_line, line)) {
    session().current_station = to;
  }
  return result;
}

}  // namespace Module_survey_edits
