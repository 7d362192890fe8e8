#include "projections/station_places.h"

#include <algorithm>
#include <set>
#include <utility>

#include "database/stations.h"
#include "database/survey_lists.h"
#include "projections/site_projection.h"

namespace Module_projections {

namespace {

using namespace numerics::geodesy;
using Module_database::ListedStation;
using Places = std::vector<PlacedStation>;

Places on_the_map(const std::vector<ListedStation>& stations,
                  const std::vector<std::optional<GeographicPlace>>& geographic) {
  Places places;
  for (const ListedStation& station : stations) {
    places.push_back({station.station, {}});
  }
  const auto system = system_of_sites(geographic);
  for (std::size_t i = 0; system && i < places.size(); ++i) {
    places[i].place = projected(system->parameters, geographic[i]);
  }
  return places;
}

/// The same with the stations' map places where there is none.
Places with_map_places(Places places, const std::vector<ListedStation>& stations) {
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!places[i].place && Module_database::has_own_map_place(stations[i].place)) {
      places[i].place = {stations[i].place.map_x, stations[i].place.map_y, 0};
    }
  }
  return places;
}

bool all_placed(const Places& places) {
  return std::ranges::all_of(places, [](const PlacedStation& station) { return station.place.has_value(); });
}

/// A place that two stations share is rather that of a sensor beside its station.
bool all_differ(const Places& places) {
  std::set<std::pair<double, double>> seen;
  return std::ranges::all_of(places, [&](const PlacedStation& station) {
    return seen.emplace(station.place->easting, station.place->northing).second;
  });
}

}  // namespace

bool StationPlaces::complete() const { return all_placed(stations); }

StationPlaces station_places(std::string_view line) {
  const std::vector<ListedStation> stations = Module_database::stations_with_readings(line);
  StationPlaces places{on_the_map(stations, places_of_sites(line, stations)), true};
  if (places.complete()) {
    return places;
  }
  // Map places are of the survey's projection; without one they go with no others.
  const Places of_sites = survey_projection_is_true_to_lengths() ? places.stations : Places{};
  const Places none = on_the_map(stations, {});
  for (const Places& known : {of_sites, none}) {
    Places filled = with_map_places(known, stations);
    if (!filled.empty() && all_placed(filled) && all_differ(filled)) {
      return {std::move(filled), false};
    }
  }
  return places;
}

}  // namespace Module_projections
