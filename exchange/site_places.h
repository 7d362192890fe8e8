// site_places.h: where the stations of a line are on the earth, for files that want latitude and longitude.
#pragma once
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace Module_exchange {

/// WGS84 or what the files of the survey named, as they had it.
struct GeographicSite {
  double latitude = 0.0;            // degrees, north positive
  double longitude = 0.0;           // degrees, east positive, -180 to 180
  std::optional<double> elevation;  // m
  std::string datum;                // empty: not known
  bool from_projection = false;     // map coordinates of the station, taken back by the survey's projection
};

/// The stations of a line that have a place: that of their site, else the map coordinates of their location
/// by the projection of the survey. Needs an open survey; throws dao::Error.
std::map<double, GeographicSite> places_of_line(std::string_view line);

/// Why stations of the survey have no places on the earth: that it has no projection, or a local one, or
/// that its stations have no map coordinates. A sentence without its point.
std::string why_no_places();

}  // namespace Module_exchange
