#include "projections/site_projection.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <numbers>
#include <utility>

#include "core/median.h"
#include "database/sites.h"
#include "projections/survey_projection.h"

namespace Module_projections {

using namespace numerics::geodesy;
using Module_database::ListedStation;

namespace {

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

/// In longitude.
std::optional<GeographicPlace> median_of(std::span<const OptionalPlace> places) {
  std::vector<GeographicPlace> given;
  for (const OptionalPlace& place : places) {
    if (place) {
      given.push_back(*place);
    }
  }
  if (given.empty()) {
    return std::nullopt;
  }
  const auto middle = given.begin() + static_cast<std::ptrdiff_t>(given.size() / 2);
  std::ranges::nth_element(given, middle, {}, &GeographicPlace::longitude);
  return *middle;
}

SiteSystem system_for(GeographicPlace median) {
  if (survey_projection_is_true_to_lengths()) {
    const CoordSystem& system = current_coord_system();
    try {
      return {in_one_zone(system.values(), median), name_part(system.name)};
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): an unusable one is as good as none
    }
  }
  return {in_one_zone(usual_system(), median), "UTM on WGS 84"};
}

std::optional<TransformParameters> in_zone_of(const CoordinateSystemValues& values,
                                              std::span<const OptionalPlace> sites) {
  const auto median = median_of(sites);
  try {
    return median ? std::optional(in_one_zone(values, *median)) : std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

/// How far the map places of the stations lie from those of their sites: the median, m. None without both.
std::optional<double> typical_distance(const TransformParameters& system,
                                       const std::vector<ListedStation>& stations,
                                       std::span<const OptionalPlace> sites) {
  std::vector<double> distances;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    if (const auto place = projected(system, sites[i])) {
      const StationPlace& given = stations[i].place;
      distances.push_back(std::hypot(given.map_x - place->easting, given.map_y - place->northing));
    }
  }
  return distances.empty() ? std::nullopt : std::optional(median(std::move(distances)));
}

}  // namespace

std::vector<OptionalPlace> places_of_sites(std::string_view line,
                                           const std::vector<ListedStation>& stations) {
  std::vector<OptionalPlace> places(stations.size());
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

bool survey_projection_is_true_to_lengths() {
  const CoordSystem& system = current_coord_system();
  return !system.name.empty() && system.projection != projection_geographic &&
         system.projection != projection_epsg_3857;
}

std::optional<SiteSystem> system_of_sites(std::span<const OptionalPlace> places) {
  const auto median = median_of(places);
  try {
    return median ? std::optional(system_for(*median)) : std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

MapSystem system_of_map_places(std::string_view line) {
  constexpr double same_map = 100.0;          // m; other datums are farther off
  constexpr double surely_another = 10000.0;  // latitudes and longitudes in whole minutes are nearer
  const std::vector<ListedStation> stations = Module_database::stations_with_readings(line);
  const std::vector<OptionalPlace> sites = places_of_sites(line, stations);
  const CoordSystem& system = current_coord_system();
  const bool is_set = !system.name.empty() && system.transform_parameters != TransformParameters{};
  if (!is_set) {
    const auto usual = in_zone_of(usual_system(), sites);
    const auto off = usual ? typical_distance(*usual, stations, sites) : std::nullopt;
    return off && *off <= same_map ? MapSystem{usual, {}} : MapSystem{{}, "The survey has no projection"};
  }
  const auto parameters = leads_back(system.values()) ? std::optional(system.transform_parameters)
                                                      : in_zone_of(system.values(), sites);
  if (!parameters) {
    return {{},
            "No way leads back from the projection " + name_part(system.name) +
                " to latitudes and longitudes: it names no zone, and the sites have no places"};
  }
  const auto off = typical_distance(*parameters, stations, sites);
  if (off && *off > surely_another) {
    return {{},
            "The map coordinates of the stations aren't of the projection " + name_part(system.name) +
                ": an import with it gives them"};
  }
  return {parameters, {}};
}

std::optional<MapPlace> projected(const TransformParameters& system, const OptionalPlace& place) {
  try {
    return place ? std::optional(ll2en(system, *place)) : std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

double true_north_on_grid(const TransformParameters& system, const GeographicPlace& place) {
  constexpr double step = 1e-4;  // degrees: 11 m, along which a meridian is straight on any map
  const double side = place.latitude > 0.0 ? -step : step;  // away from the pole
  const auto here = projected(system, place);
  const auto beside = projected(system, GeographicPlace{place.latitude + side, place.longitude});
  if (!here || !beside) {
    return 0.0;
  }
  const double sign = side > 0.0 ? 1.0 : -1.0;
  return std::atan2(sign * (beside->easting - here->easting), sign * (beside->northing - here->northing)) *
         180.0 / std::numbers::pi;
}

}  // namespace Module_projections
