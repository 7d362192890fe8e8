// stations.h: the survey's stations and the places on the ground that they share.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace Module_database {

enum class StationSearch { look_up, create };

/// A station's rows and place. `given_*` tells which coordinates the caller brought along when the station is
/// new.
struct StationRows {
  std::int32_t StationID = -1;   // -1: there is none
  std::int32_t LocationID = -1;  // -1: there is none
  double LocalX = 0.0;           // m
  double LocalY = 0.0;
  double MapX = 0.0;
  double MapY = 0.0;
  double Elevation = 0.0;
};

/// Coordinates that a field file brings for its station, m.
struct GivenPlace {
  double MapX = 0.0;
  double MapY = 0.0;
  double Elevation = 0.0;
};

/// Looks a station up by line and station number; with `create` adds what is missing. Local coordinates of a
/// new station follow from line and station. `place`, if given, wins over the location's own when the station
/// is new. Needs an open survey; throws dao::Error.
StationRows find_station(StationSearch mode, std::string_view line, double station,
                         const GivenPlace* place = nullptr);

/// Looks for a location within a Manhattan distance of 1 m (of coordinates rounded to one decimal). Fills
/// LocationID, MapX, MapY, Elevation of `rows` if there is one; otherwise LocationID is -1 and, in look_up
/// mode, the map coordinates are computed from the survey grid.
void find_location(StationSearch mode, StationRows& rows);

/// The number of a line text without its letter, negative for W and S: 200 for "200E", -200 for "200W".
double line_to_number(std::string_view line);

/// The largest value of a column, 0 when the table is empty.
double get_max_value(std::string_view column, std::string_view table);

}  // namespace Module_database
