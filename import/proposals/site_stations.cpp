#include "import/proposals/site_stations.h"

#include <algorithm>
#include <cmath>

#include "core/text_fields.h"

namespace Module_data_file {

using numerics::geodesy::MapPlace;

std::optional<MapPlace> place_on(const PlaceMap& map, const Module_database::Site& site) {
  return site.latitude && site.longitude ? map.on_map({*site.latitude, *site.longitude}) : std::nullopt;
}

double distance(const MapPlace& a, const MapPlace& b) {
  return std::hypot(a.easting - b.easting, a.northing - b.northing);
}

std::optional<double> metres_between(const OwnStation& a, const OwnStation& b, const PlaceMap& map) {
  if (a.map_place && b.map_place) {
    return distance(*a.map_place, *b.map_place);
  }
  const std::optional<MapPlace> of_a = a.place ? map.on_map(*a.place) : std::nullopt;
  const std::optional<MapPlace> of_b = b.place ? map.on_map(*b.place) : std::nullopt;
  return of_a && of_b ? std::optional(distance(*of_a, *of_b)) : std::nullopt;
}

SiteStations::Line& SiteStations::line_of(const std::string& line) {
  const auto [known, is_new] = lines_.try_emplace(upper_case(line));
  if (is_new) {
    for (const Module_database::Site& site : survey_.sites(line)) {
      if (!site.name.empty()) {
        known->second[upper_case(site.name)].push_back({place_on(map_, site), site.station});
      }
    }
  }
  return known->second;
}

std::optional<double> SiteStations::close_to(const std::string& line, const std::string& name,
                                             const Place& place) {
  const std::vector<Known>& alike = line_of(line)[upper_case(name)];
  const auto found = std::ranges::find_if(alike, [&](const Known& known) {
    return place && known.place && distance(*place, *known.place) <= same_place;
  });
  return found == alike.end() ? std::nullopt : std::optional(found->station);
}

std::optional<double> SiteStations::named(const std::string& line, const std::string& name,
                                          const Place& place) {
  if (const std::optional<double> station = close_to(line, name, place)) {
    return station;
  }
  const std::vector<Known>& alike = line_of(line)[upper_case(name)];
  const auto found = std::ranges::find_if(alike, [&](const Known& known) { return !place || !known.place; });
  return found == alike.end() ? std::nullopt : std::optional(found->station);
}

void SiteStations::add(const std::string& line, const std::string& name, const Place& place, double station) {
  line_of(line)[upper_case(name)].push_back({place, station});
}

}  // namespace Module_data_file
