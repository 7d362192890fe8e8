// site_places.h: where the stations of a line are on the earth, for files that want latitude and longitude.
#pragma once
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Module_exchange {

/// WGS84 or what the files of the survey named, as they had it.
struct GeographicSite {
  double latitude = 0.0;            // degrees, north positive
  double longitude = 0.0;           // degrees, east positive, -180 to 180
  std::optional<double> elevation;  // m
  std::string datum;                // empty: not known
  bool from_projection = false;     // map coordinates of the station, taken back by the survey's projection
};

/// The stations of a line that have readings and a place: that of their site, else the map coordinates of
/// their location by the projection of the survey (Module_projections::current_coord_system, which a program
/// reads when it opens a survey), shifted to WGS 84. Elevations are those of the sites, else
/// of the locations; an elevation of 0 of a location isn't one. Needs an open survey; throws dao::Error.
std::map<double, GeographicSite> places_of_line(std::string_view line);

/// Whether a place may be off on a map that counts in WGS 84; not if nobody has named a datum.
bool is_on_other_datum(const GeographicSite& site);

/// That places on such a datum may be off, a sentence without its point.
/// @param stations  whose places they are, as "200E 100"; at least one
std::string datum_remark(const std::string& datum, const std::vector<std::string>& stations);

/// Why stations of the survey have no places on the earth: that it has no projection, or one that doesn't
/// lead back, or that its stations have local coordinates only. A sentence without its point. Needs an open
/// survey; throws dao::Error.
std::string why_no_places();

}  // namespace Module_exchange
