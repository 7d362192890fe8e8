#include "projections/station_places.h"

#include <algorithm>
#include <exception>
#include <set>
#include <utility>

#include "database/sites.h"
#include "database/stations.h"
#include "database/survey_lists.h"
#include "projections/survey_projection.h"

namespace Module_projections {

namespace {

using namespace numerics::geodesy;
using Module_database::ListedStation;
using Places = std::vector<PlacedStation>;

/// Latitude and longitude of each station that has a site with a place, in the order of the stations.
std::vector<std::optional<GeographicPlace>> places_of_sites(std::string_view line,
                                                            const std::vector<ListedStation>& stations) {
  std::vector<std::optional<GeographicPlace>> places(stations.size());
  for (const Module_database::Site& site : Module_database::sites_of_line(line)) {
    const bool is_given =
        site.latitude && site.longitude && (*site.latitude != 0.0 || *site.longitude != 0.0);
    const auto station = std::ranges::lower_bound(stations, site.station, {}, &ListedStation::station);
    if (is_given && station != stations.end() && station->station == site.station) {
      places[static_cast<std::size_t>(station - stations.begin())] = {*site.latitude, *site.longitude};
    }
  }
  return places;
}

/// Lengths on the map are those on the ground, but for the scale factor.
bool is_true_to_lengths(const CoordSystem& system) {
  return !system.name.empty() && system.projection != projection_geographic &&
         system.projection != projection_epsg_3857;
}

CoordinateSystemValues usual_system() {
  constexpr std::int32_t wgs_84 = 4326;
  CoordinateSystemValues values;
  values.projection = projection_utm;
  values.datum = wgs_84;
  values.zone_width = 6.0;
  return values;
}

/// The system with the zone and the hemisphere of the median place for all others: a line that crosses the
/// border of a zone stays in one piece.
TransformParameters in_one_zone(CoordinateSystemValues values, GeographicPlace median) {
  const TransformParameters parameters = crdprm(values);
  if (values.zone_number == 0) {
    values.zone_number = ll2en(parameters, median).zone_number;
  }
  if (values.hemisphere != hemisphere_north && values.hemisphere != hemisphere_south) {
    values.hemisphere = median.latitude < 0.0 ? hemisphere_south : hemisphere_north;
  }
  return crdprm(values);
}

GeographicPlace median_of(const std::vector<std::optional<GeographicPlace>>& places) {
  std::vector<GeographicPlace> given;
  for (const auto& place : places) {
    if (place) {
      given.push_back(*place);
    }
  }
  const auto middle = given.begin() + static_cast<std::ptrdiff_t>(given.size() / 2);
  std::ranges::nth_element(given, middle, {}, &GeographicPlace::longitude);
  return *middle;
}

/// None for a place that the system can't show.
std::optional<MapPlace> projected(const TransformParameters& system,
                                  const std::optional<GeographicPlace>& place) {
  try {
    return place ? std::optional(ll2en(system, *place)) : std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

TransformParameters system_for(GeographicPlace median) {
  if (is_true_to_lengths(current_coord_system())) {
    try {
      return in_one_zone(current_coord_system().values(), median);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): an unusable one is as good as none
    }
  }
  return in_one_zone(usual_system(), median);
}

Places on_the_map(const std::vector<ListedStation>& stations,
                  const std::vector<std::optional<GeographicPlace>>& geographic) {
  Places places;
  for (const ListedStation& station : stations) {
    places.push_back({station.station, {}});
  }
  if (std::ranges::any_of(geographic, [](const auto& place) { return place.has_value(); })) {
    TransformParameters system{};
    try {
      system = system_for(median_of(geographic));
    } catch (const std::exception&) {
      return places;  // the median is no place on the earth
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
      places[i].place = projected(system, geographic[i]);
    }
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
  const Places of_sites = is_true_to_lengths(current_coord_system()) ? places.stations : Places{};
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
