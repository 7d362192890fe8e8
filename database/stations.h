// stations.h: the survey's stations and the places on the ground that they share.
#pragma once
#include <cstdint>
#include <string_view>

#include "core/session_state.h"

namespace Module_database {

inline constexpr std::int32_t no_row = -1;  // the ID of a row that isn't there

enum class StationSearch { look_up, create };

/// The IDs of a station's row and of its location's, and where it is.
struct StationRows {
  std::int32_t StationID = no_row;
  std::int32_t LocationID = no_row;
  double LocalX = 0.0;  // m
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
/// new station follow from line and station. The place of a new station is that of its location, if that is
/// known already; else the given place, or without one what the survey grid gives. Needs an open survey;
/// throws dao::Error.
StationRows find_station(StationSearch mode, std::string_view line, double station,
                         const GivenPlace* place = nullptr);

/// The location within a Manhattan distance of 1 m of a place (rounded to one decimal), with its map
/// coordinates. Without one, LocationID is no_row and the map coordinates are computed from the survey
/// grid. StationID stays no_row.
StationRows find_location(double local_x, double local_y);

/// Whether a station's map place says where it is. One that no file gave a place has what the survey grid
/// makes of its local coordinates, and these are only its line and number again.
bool has_own_map_place(const StationPlace& place);

/// Sets map coordinates and elevation of a place to what the survey grid gives for its local coordinates.
void map_from_survey_grid(StationRows& rows);

/// Local coordinates, m.
struct LocalPlace {
  double x = 0.0;
  double y = 0.0;
};

/// Where a station is by its line and number.
LocalPlace local_place(std::string_view line, double station);

/// Adds a location that a station of this name gives. @return its ID
std::int32_t add_location(std::string_view line, double station, const StationRows& rows);

/// The number of a line text without its letter, negative for W and S: 200 for "200E", -200 for "200W".
double line_to_number(std::string_view line);

/// The largest value of a numeric column, 0 when the table is empty.
double get_max_value(std::string_view column, std::string_view table);

}  // namespace Module_database
