// zonge_text.h: the lines of a Zonge AVG data set, with CR LF at their ends.
#pragma once
#include <chrono>
#include <string>
#include <string_view>

namespace Module_output {

/// What the heads of the files say about a line.
struct ZongeLine {
  std::string line;            // "200E"
  double first_station = 0.0;  // m
  double last_station = 0.0;
  float dipole = 0.0F;        // electrode spacing, m
  std::string bearing;        // "N45E"
  std::string version;        // of this program
  std::string database_name;  // without its folder
  std::chrono::year_month_day date{};
};

/// Bearing of a line that runs dx to the east and dy to the north: "N00E" to "S90W". A line of one station
/// counts as running north.
std::string bearing_text(double dx, double dy);

/// The whole ".mde" file.
std::string mde_text(const ZongeLine& line);

/// The head of the ".avg" file, and one data row: station m, frequency Hz, resistivity ohm-m without static
/// correction, phase degrees.
std::string avg_head(const ZongeLine& line);
std::string avg_row(double station, float frequency, float resistivity, float phase);

/// The first line of the ".stn" file, and the line of one station, all in m.
std::string stn_head(std::string_view line);
std::string stn_row(double station, double map_x, double map_y, double elevation);

}  // namespace Module_output
