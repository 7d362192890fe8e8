#include "exchange/site_places.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <iterator>
#include <vector>

#include "core/number_text.h"
#include "core/text_lists.h"
#include "database/sites.h"
#include "database/stations.h"
#include "database/survey_lists.h"
#include "numerics/geodesy/coordinate_transforms.h"
#include "numerics/geodesy/datum_shift.h"
#include "projections/survey_projection.h"

namespace Module_exchange {

namespace {

using namespace numerics::geodesy;
using Module_database::ListedStation;

constexpr const char* wgs_84_name = "WGS84";
constexpr std::int32_t wgs_84 = 4326;

double from_minus_180_to_180(double longitude) {
  return longitude >= -180.0 && longitude <= 180.0 ? longitude : std::remainder(longitude, 360.0);
}

/// Heads without a place have zeros.
bool has_place(const Module_database::Site& site) {
  return site.latitude && std::abs(*site.latitude) <= 90.0 && site.longitude &&
         std::abs(*site.longitude) <= 360.0 && (*site.latitude != 0.0 || *site.longitude != 0.0);
}

GeographicSite place_of(const Module_database::Site& site) {
  return {*site.latitude, from_minus_180_to_180(*site.longitude), site.elevation, site.datum, false};
}

/// The datum that map coordinates of a system are counted on.
std::int32_t datum_of(const CoordinateSystemValues& values) {
  if (values.projection == projection_epsg_3857 ||
      (values.projection == projection_geographic && !find_datum(values.datum))) {
    return wgs_84;
  }
  return find_datum(values.datum) ? values.datum : substitute_datum(values.projection);
}

struct MapStation {
  double station = 0.0;
  GeographicPlace place;
};

/// None for coordinates that the projection has for no place.
std::optional<GeographicPlace> taken_back(const TransformParameters& parameters,
                                          const Module_database::ListedStation& station) {
  try {
    return en2ll(parameters, {station.place.map_x, station.place.map_y, 0});
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::vector<MapStation> on_the_map(const std::vector<ListedStation>& stations) {
  const CoordinateSystemValues& values = Module_projections::current_coord_system().values();
  std::vector<MapStation> found;
  if (Module_projections::current_coord_system().name.empty() || !leads_back(values)) {
    return found;
  }
  TransformParameters parameters{};
  try {
    parameters = crdprm(values);
  } catch (const std::exception&) {  // an unusable projection is as good as none
    return found;
  }
  for (const ListedStation& station : stations) {
    if (Module_database::has_own_map_place(station.place)) {
      if (const auto place = taken_back(parameters, station)) {
        found.push_back({station.station, *place});
      }
    }
  }
  return found;
}

/// What can't be shifted stays on the datum of the projection, which is then named.
std::string shift_to_wgs_84(std::vector<MapStation>& stations) {
  const std::int32_t number = datum_of(Module_projections::current_coord_system().values());
  std::vector<GeographicPlace> places;
  std::ranges::transform(stations, std::back_inserter(places), &MapStation::place);
  const auto shifted = shifted_to_wgs_84(number, places);
  if (!shifted) {
    const auto datum = find_datum(number);
    return datum ? datum->name : std::string();
  }
  for (std::size_t i = 0; i < stations.size(); ++i) {
    stations[i].place = (*shifted)[i];
  }
  return wgs_84_name;
}

void add_map_places(const std::vector<ListedStation>& stations, std::map<double, GeographicSite>& places) {
  std::vector<MapStation> on_map = on_the_map(stations);
  if (on_map.empty()) {
    return;
  }
  const std::string datum = shift_to_wgs_84(on_map);
  for (const MapStation& each : on_map) {
    places.try_emplace(each.station,
                       GeographicSite{each.place.latitude, from_minus_180_to_180(each.place.longitude),
                                      std::nullopt, datum, true});
  }
}

/// To places without one: a site may have an elevation and no place, and a location of 0 m hasn't been given.
void add_elevations(const std::vector<ListedStation>& stations,
                    const std::vector<Module_database::Site>& sites,
                    std::map<double, GeographicSite>& places) {
  std::map<double, double> known;
  for (const ListedStation& station : stations) {
    if (station.place.elevation != 0.0) {
      known[station.station] = station.place.elevation;
    }
  }
  for (const Module_database::Site& site : sites) {
    if (site.elevation) {
      known[site.station] = *site.elevation;
    }
  }
  for (auto& [station, place] : places) {
    if (const auto elevation = known.find(station); !place.elevation && elevation != known.end()) {
      place.elevation = elevation->second;
    }
  }
}

bool any_map_coordinates() {
  return std::ranges::any_of(Module_database::listed_stations(), [](const ListedStation& station) {
    return Module_database::has_own_map_place(station.place);
  });
}

}  // namespace

std::map<double, GeographicSite> places_of_line(std::string_view line) {
  const std::vector<ListedStation> stations = Module_database::stations_with_readings(line);
  const std::vector<Module_database::Site> sites = Module_database::sites_of_line(line);
  std::map<double, GeographicSite> places;
  for (const Module_database::Site& site : sites) {
    if (has_place(site) && std::ranges::binary_search(stations, site.station, {}, &ListedStation::station)) {
      places.emplace(site.station, place_of(site));
    }
  }
  if (places.size() < stations.size()) {
    add_map_places(stations, places);
  }
  add_elevations(stations, sites, places);
  return places;
}

bool is_on_other_datum(const GeographicSite& site) {
  return !site.datum.empty() && !is_close_to_wgs_84(site.datum);
}

std::string datum_remark(const std::string& datum, const std::vector<std::string>& stations) {
  const bool is_one = stations.size() == 1;
  return (is_one ? "The place of station " + stations.front() + " is"
                 : "The places of " + plain_text(static_cast<std::int64_t>(stations.size())) + " stations (" +
                       listed_first(stations) + ") are") +
         " on the datum \"" + datum + "\" and may lie hundreds of metres off on a map that counts in WGS 84";
}

std::string why_no_places() {
  const Module_projections::CoordSystem& system = Module_projections::current_coord_system();
  const std::string no_site = "its files gave no latitude and longitude";
  if (!any_map_coordinates()) {
    return system.name.empty()
               ? "the survey has no projection, and " + no_site
               : no_site + ", and its stations have local coordinates only, which no projection takes back";
  }
  if (system.name.empty()) {
    return "the survey has no projection for the map coordinates of its stations, and " + no_site;
  }
  const std::string name = "the projection \"" + Module_projections::name_part(system.name) + "\"";
  try {
    (void)crdprm(system.values());
  } catch (const std::exception& fault) {
    return name + " of the survey can't be used (" + fault.what() + "), and " + no_site;
  }
  if (!leads_back(system.values())) {
    return name + " of the survey doesn't say in which zone and hemisphere its map coordinates are, and " +
           no_site;
  }
  return "the map coordinates of its stations lie outside of " + name + ", and " + no_site;
}

}  // namespace Module_exchange
