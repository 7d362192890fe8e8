#include "projections/survey_places.h"

#include <algorithm>

#include "database/stations.h"
#include "database/survey_lists.h"
#include "projections/site_projection.h"

namespace Module_projections {

namespace {

using Module_database::ListedStation;
using numerics::geodesy::MapPlace;

struct KnownStations {
  std::vector<ListedStation> stations;
  std::vector<OptionalPlace> sites;  // of each station
};

KnownStations stations_of(std::span<const std::string> lines) {
  KnownStations known;
  for (const std::string& line : lines) {
    const std::vector<ListedStation> stations = Module_database::stations_with_readings(line);
    const std::vector<OptionalPlace> sites = places_of_sites(line, stations);
    known.stations.insert(known.stations.end(), stations.begin(), stations.end());
    known.sites.insert(known.sites.end(), sites.begin(), sites.end());
  }
  return known;
}

std::optional<MapPlace> map_place(const ListedStation& station) {
  return Module_database::has_own_map_place(station.place)
             ? std::optional(MapPlace{station.place.map_x, station.place.map_y, 0})
             : std::nullopt;
}

void place_by_sites(const KnownStations& known, const SiteSystem& system, SurveyPlaces& places) {
  const bool same_map = survey_projection_is_true_to_lengths();
  for (std::size_t i = 0; i < known.stations.size(); ++i) {
    SurveyPlace& station = places.stations[i];
    station.place = projected(system.parameters, known.sites[i]);
    if (station.place) {
      station.true_north = true_north_on_grid(system.parameters, *known.sites[i]);
    } else if (same_map) {
      station.place = map_place(known.stations[i]);
    }
  }
}

bool any_placed(const SurveyPlaces& places) {
  return std::ranges::any_of(places.stations,
                             [](const SurveyPlace& station) { return station.place.has_value(); });
}

}  // namespace

SurveyPlaces survey_places(std::span<const std::string> lines) {
  const KnownStations known = stations_of(lines);
  SurveyPlaces places;
  for (const ListedStation& station : known.stations) {
    places.stations.push_back({station.line, station.station, station.ID, {}, 0.0});
  }
  if (const auto system = system_of_sites(known.sites)) {
    place_by_sites(known, *system, places);
    places.source = PlaceSource::sites;
    places.system = system->name;
    places.parameters = system->parameters;
    if (any_placed(places)) {
      return places;
    }
    places.system.clear();
    places.parameters = {};
  }
  places.source = PlaceSource::map;
  for (std::size_t i = 0; i < known.stations.size(); ++i) {
    places.stations[i].place = map_place(known.stations[i]);
  }
  if (any_placed(places)) {
    return places;
  }
  places.source = PlaceSource::local;
  for (std::size_t i = 0; i < known.stations.size(); ++i) {
    const StationPlace& place = known.stations[i].place;
    places.stations[i].place = {place.local_x, place.local_y, 0};
  }
  return places;
}

}  // namespace Module_projections
