// station_heading.h: the line over a panel's graphs: which station they are of, and the curve clicked last.
#pragma once
#include <string>

class HeadingLabel;

/// Shows a heading of the current station, empty without one. A narrow panel still names the station.
void show_station_heading(HeadingLabel& heading, const std::string& text);

/// Shows the curve beside the station; without one the station has all the room.
void show_curve_heading(HeadingLabel& heading, const std::string& text);
