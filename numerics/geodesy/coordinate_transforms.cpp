#include "numerics/geodesy/coordinate_transforms.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>

#include <proj.h>

#include "core/number_text.h"

namespace numerics::geodesy {

namespace {

// Places of the transform parameters.
enum Parameter : std::size_t {
  parameter_kind,  // 1 + the projection, so that zeros are no system
  parameter_semi_major_axis,
  parameter_semi_minor_axis,
  parameter_origin_longitude,
  parameter_origin_latitude,
  parameter_standard_parallel_1,
  parameter_standard_parallel_2,
  parameter_scale_factor,
  parameter_false_easting,
  parameter_northing_north,  // false northing of places in the north
  parameter_northing_south,
  parameter_zone_number,
  parameter_zone_width,
};

constexpr double usual_zone_scale = 0.9996;
constexpr double usual_zone_easting = 500000.0;
constexpr double usual_southern_northing = 10000000.0;
constexpr double max_zones = 1e6;
constexpr double full_circle = 360.0;
constexpr double largest_latitude = 90.0;
constexpr double farthest = 1e8;  // m, beyond what any map shows: the pole of Mercator's projection
constexpr double far_from_zone =
    90.0;  // degrees; there transverse Mercator turns to the far side of the earth

constexpr std::int32_t wgs_84 = 4326;
constexpr std::int32_t agd_66 = 4202;

constexpr std::int32_t datum_numbers[] = {
    wgs_84,
    4283,  // GDA94
    7844,  // GDA2020
    agd_66,
    4203,  // AGD84
    4267,  // NAD27
    4269,  // NAD83
    4230,  // ED50
    4258,  // ETRS89
    4322,  // WGS 72
    4277,  // OSGB36
    4167,  // NZGD2000
    4272,  // NZGD49
    4674,  // SIRGAS 2000
    4618,  // SAD69
    4248,  // PSAD56
    4222,  // Cape
    4148,  // Hartebeesthoek94
    4209,  // Arc 1950
    4210,  // Arc 1960
    4201,  // Adindan
    4284,  // Pulkovo 1942
    4612,  // JGD2000
    4301,  // Tokyo
    4240,  // Indian 1975
    4490,  // CGCS2000
};

struct DestroyContext {
  void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};
struct DestroyProjection {
  void operator()(PJ* projection) const { proj_destroy(projection); }
};
using ProjectionHandle = std::unique_ptr<PJ, DestroyProjection>;

// The library's state, and the projection used last: survey after survey is converted in one system. A cache
// only: no result depends on what it holds. One for each thread, because a PROJ context serves one at a time.
struct Engine {
  std::unique_ptr<PJ_CONTEXT, DestroyContext> context;
  TransformParameters parameters{};
  ProjectionHandle projection;
};

Engine& engine() {
  thread_local Engine started = [] {
    Engine fresh{std::unique_ptr<PJ_CONTEXT, DestroyContext>(proj_context_create()), {}, nullptr};
    if (fresh.context == nullptr) {
      throw std::runtime_error("the projection library can't be started");
    }
    proj_context_set_enable_network(fresh.context.get(), 0);
    proj_log_level(fresh.context.get(), PJ_LOG_NONE);
    return fresh;
  }();
  return started;
}

PJ_CONTEXT* proj_context() { return engine().context.get(); }

std::runtime_error proj_failure(int error) {
  return std::runtime_error(proj_context_errno_string(proj_context(), error));
}

std::runtime_error outside() { return std::runtime_error("the place lies outside of the projection"); }

void require_tables() {
  if (proj_context_get_database_metadata(proj_context(), "EPSG.VERSION") == nullptr) {
    throw std::runtime_error(
        "the tables of datums (proj.db) that belong to the projection library are missing");
  }
}

std::optional<Datum> look_up_datum(std::int32_t number) {
  require_tables();
  PJ_CONTEXT* const context = proj_context();
  const ProjectionHandle system(proj_create_from_database(context, "EPSG", std::to_string(number).c_str(),
                                                          PJ_CATEGORY_CRS, 0, nullptr));
  if (system == nullptr || proj_get_type(system.get()) != PJ_TYPE_GEOGRAPHIC_2D_CRS) {
    return std::nullopt;
  }
  const ProjectionHandle meridian(proj_get_prime_meridian(context, system.get()));
  double longitude = 0.0;
  double degrees = 0.0;
  const ProjectionHandle ellipsoid(proj_get_ellipsoid(context, system.get()));
  Datum datum;
  if (proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, &degrees, nullptr) == 0 ||
      longitude != 0.0 ||
      proj_ellipsoid_get_parameters(context, ellipsoid.get(), &datum.semi_major_axis, &datum.semi_minor_axis,
                                    nullptr, nullptr) == 0) {
    return std::nullopt;
  }
  datum.name = proj_get_name(system.get());
  datum.ellipsoid = proj_get_name(ellipsoid.get());
  return datum;
}

bool has_zones(std::int32_t projection) {
  return projection == projection_australian_map_grid || projection == projection_utm;
}

bool needs_datum(std::int32_t projection) {
  return projection != projection_geographic && projection != projection_epsg_3857;
}

void require_finite(const CoordinateSystemValues& values) {
  for (const double value : {values.origin_longitude, values.origin_latitude, values.standard_parallel_1,
                             values.standard_parallel_2, values.scale_factor, values.false_easting,
                             values.false_northing, values.zone_width}) {
    if (!std::isfinite(value)) {
      throw std::runtime_error("a value of the coordinate system is not a finite number");
    }
  }
}

/// The number of zones of this width around the earth; 0 if the width is not above 0.
double zone_count(double zone_width) {
  return zone_width > 0.0 && zone_width <= full_circle ? std::ceil(full_circle / zone_width) : 0.0;
}

void set_zone(const CoordinateSystemValues& values, TransformParameters& parameters) {
  const double zones = zone_count(values.zone_width);
  if (!(zones >= 1.0 && zones <= max_zones)) {
    throw std::runtime_error("the zone width of " + plain_text(values.zone_width) +
                             " degrees gives no zones");
  }
  if (values.zone_number < 0 || values.zone_number > zones) {
    throw std::runtime_error("the zone number " + plain_text(values.zone_number) + " is not one of 1 to " +
                             plain_text(zones) + ", nor 0 for the zone of each longitude");
  }
  const bool southern =
      values.projection == projection_australian_map_grid || values.hemisphere == hemisphere_south;
  const bool northern = !southern && values.hemisphere == hemisphere_north;
  const bool given = values.false_northing != 0.0;
  parameters[parameter_scale_factor] = values.scale_factor != 0.0 ? values.scale_factor : usual_zone_scale;
  parameters[parameter_false_easting] =
      values.false_easting != 0.0 ? values.false_easting : usual_zone_easting;
  parameters[parameter_northing_north] =
      given ? values.false_northing : (southern ? usual_southern_northing : 0.0);
  parameters[parameter_northing_south] =
      given ? values.false_northing : (northern ? 0.0 : usual_southern_northing);
  parameters[parameter_zone_number] = values.zone_number;
  parameters[parameter_zone_width] = values.zone_width;
}

void set_conic(const CoordinateSystemValues& values, TransformParameters& parameters) {
  parameters[parameter_origin_longitude] = values.origin_longitude;
  parameters[parameter_origin_latitude] = values.origin_latitude;
  parameters[parameter_standard_parallel_1] = values.standard_parallel_1;
  parameters[parameter_standard_parallel_2] = values.standard_parallel_2;
  const bool scaled = values.projection == projection_lambert_conformal && values.scale_factor != 0.0;
  parameters[parameter_scale_factor] = scaled ? values.scale_factor : 1.0;
  parameters[parameter_false_easting] = values.false_easting;
  parameters[parameter_northing_north] = parameters[parameter_northing_south] = values.false_northing;
}

std::int32_t projection_of(const TransformParameters& parameters) {
  return static_cast<std::int32_t>(parameters[parameter_kind]) - 1;
}

std::string projection_text(const TransformParameters& parameters) {
  const auto option = [&](std::string_view key, Parameter place) {
    return " +" + std::string(key) + "=" + criterion_text(parameters[place]);
  };
  const std::string ellipsoid =
      option("a", parameter_semi_major_axis) + option("b", parameter_semi_minor_axis) + " +units=m +no_defs";
  const std::string conic =
      option("lon_0", parameter_origin_longitude) + option("lat_0", parameter_origin_latitude) +
      option("lat_1", parameter_standard_parallel_1) + option("lat_2", parameter_standard_parallel_2);
  switch (projection_of(parameters)) {
    case projection_australian_map_grid:
    case projection_utm:
      return "+proj=tmerc +lon_0=0" + option("k_0", parameter_scale_factor) + ellipsoid;
    case projection_lambert_conformal:
      return "+proj=lcc" + conic + option("k_0", parameter_scale_factor) + ellipsoid;
    case projection_albers:
      return "+proj=aea" + conic + ellipsoid;
    case projection_equidistant_conic:
      return "+proj=eqdc" + conic + ellipsoid;
    case projection_epsg_3857:
      return "+proj=webmerc" + ellipsoid;
    default:
      throw std::runtime_error("the coordinate system has not been decoded");
  }
}

ProjectionHandle make_projection(const TransformParameters& parameters) {
  const std::string text = projection_text(parameters);
  ProjectionHandle projection(proj_create(proj_context(), text.c_str()));
  if (projection == nullptr) {
    throw proj_failure(proj_context_errno(proj_context()));
  }
  return projection;
}

PJ* projection_for(const TransformParameters& parameters) {
  Engine& ready = engine();
  if (ready.projection == nullptr || ready.parameters != parameters) {
    ready.projection = make_projection(parameters);
    ready.parameters = parameters;
  }
  return ready.projection.get();
}

PJ_COORD project(const TransformParameters& parameters, double longitude, double latitude) {
  PJ* const projection = projection_for(parameters);
  proj_errno_reset(projection);
  const PJ_COORD result =
      proj_trans(projection, PJ_FWD, proj_coord(proj_torad(longitude), proj_torad(latitude), 0.0, 0.0));
  if (const int error = proj_errno(projection); error != 0) {
    proj_errno_reset(projection);
    throw proj_failure(error);
  }
  if (!(std::hypot(result.xy.x, result.xy.y) < farthest)) {  // negated, so that a NaN fails
    throw outside();
  }
  return result;
}

// An angle brought into [-180, 180). One that lies there already keeps its every digit.
double around_zero(double degrees) {
  constexpr double half_circle = full_circle / 2.0;
  return degrees >= -half_circle && degrees < half_circle
             ? degrees
             : degrees - full_circle * std::floor((degrees + half_circle) / full_circle);
}

void require_earthly(const GeographicPlace& place) {
  // Negated, so that a NaN fails.
  if (!(std::abs(place.latitude) <= largest_latitude) || !(std::abs(place.longitude) <= full_circle)) {
    throw std::runtime_error("latitude " + plain_text(place.latitude) + ", longitude " +
                             plain_text(place.longitude) + " is no place on the earth");
  }
}

/// The latitude and longitude of coordinates without false origin. Series give some answer far beyond the
/// map, too; it counts only if it leads there again.
GeographicPlace unproject(const TransformParameters& parameters, double easting, double northing) {
  constexpr double same_place = 0.01;  // m
  if (!(std::hypot(easting, northing) < farthest)) {
    throw outside();
  }
  PJ* const projection = projection_for(parameters);
  proj_errno_reset(projection);
  const PJ_COORD result = proj_trans(projection, PJ_INV, proj_coord(easting, northing, 0.0, 0.0));
  if (const int error = proj_errno(projection); error != 0) {
    proj_errno_reset(projection);
    throw proj_failure(error);
  }
  const GeographicPlace place{proj_todeg(result.lp.phi), proj_todeg(result.lp.lam)};
  require_earthly(place);
  const PJ_COORD again = project(parameters, place.longitude, place.latitude);
  if (!(std::hypot(again.xy.x - easting, again.xy.y - northing) < same_place)) {
    throw outside();
  }
  return place;
}

double zone_of(const TransformParameters& parameters, double longitude) {
  const double width = parameters[parameter_zone_width];
  const double given = parameters[parameter_zone_number];
  return given != 0.0 ? given : std::floor((around_zero(longitude) + full_circle / 2.0) / width) + 1.0;
}

}  // namespace

std::optional<Datum> find_datum(std::int32_t number) {
  // A cache as the engine: PROJ's tables don't change while the program runs.
  thread_local std::map<std::int32_t, std::optional<Datum>> known;
  const auto found = known.find(number);
  return found != known.end() ? found->second : known.emplace(number, look_up_datum(number)).first->second;
}

std::span<const std::int32_t> common_datums() { return datum_numbers; }

const char* projection_name(std::int32_t projection) {
  constexpr const char* names[] = {
      "Geographic",        "Australian Map Grid", "Universal Transverse Mercator",
      "Lambert Conformal", "Albers Equal Area",   "Equidistant Conic",
      "EPSG: 3857"};
  return projection >= 0 && projection < static_cast<std::int32_t>(std::size(names)) ? names[projection]
                                                                                     : "unknown";
}

const char* hemisphere_name(std::int32_t hemisphere) {
  constexpr const char* names[] = {"By the latitude", "Northern", "Southern"};
  return hemisphere >= 0 && hemisphere < static_cast<std::int32_t>(std::size(names)) ? names[hemisphere]
                                                                                     : "unknown";
}

double central_meridian(double zone_number, double zone_width) {
  return (zone_number - 0.5) * zone_width - full_circle / 2.0;
}

bool datum_is_replaced(const CoordinateSystemValues& values) {
  return needs_datum(values.projection) && !find_datum(values.datum);
}

std::int32_t substitute_datum(std::int32_t projection) {
  return projection == projection_australian_map_grid ? agd_66 : wgs_84;
}

TransformParameters crdprm(const CoordinateSystemValues& values) {
  if (values.projection < projection_geographic || values.projection > projection_epsg_3857) {
    throw std::runtime_error("there is no projection " + plain_text(values.projection));
  }
  require_finite(values);
  TransformParameters parameters{};
  parameters[parameter_kind] = 1.0 + values.projection;
  if (values.projection == projection_geographic) {
    return parameters;
  }
  std::optional<Datum> datum = find_datum(needs_datum(values.projection) ? values.datum : wgs_84);
  if (!datum) {
    datum = find_datum(substitute_datum(values.projection));
  }
  if (!datum) {
    throw std::runtime_error("the tables of datums lack WGS 84");
  }
  parameters[parameter_semi_major_axis] = datum->semi_major_axis;
  parameters[parameter_semi_minor_axis] = datum->semi_minor_axis;
  if (has_zones(values.projection)) {
    set_zone(values, parameters);
  } else if (values.projection != projection_epsg_3857) {
    set_conic(values, parameters);
  }
  (void)make_projection(parameters);  // so that values without a projection fail here
  return parameters;
}

MapPlace ll2en(const TransformParameters& parameters, const GeographicPlace& place) {
  require_earthly(place);
  const std::int32_t projection = projection_of(parameters);
  if (projection == projection_geographic) {
    return {place.longitude, place.latitude};
  }
  MapPlace map;
  double longitude = place.longitude;
  bool counts_from_south = false;
  if (has_zones(projection)) {
    const double zone = zone_of(parameters, longitude);
    map.zone_number = static_cast<std::int32_t>(zone);
    longitude = around_zero(longitude - central_meridian(zone, parameters[parameter_zone_width]));
    if (std::abs(longitude) >= far_from_zone) {
      throw outside();
    }
    const bool can_be_northern = parameters[parameter_northing_north] != parameters[parameter_northing_south];
    counts_from_south = place.latitude < 0.0 || !can_be_northern;
  }
  const PJ_COORD result = project(parameters, longitude, place.latitude);
  map.easting = result.xy.x + parameters[parameter_false_easting];
  map.northing =
      result.xy.y + parameters[counts_from_south ? parameter_northing_south : parameter_northing_north];
  return map;
}

bool leads_back(const CoordinateSystemValues& values) {
  if (!has_zones(values.projection)) {
    return true;
  }
  const bool one_hemisphere = values.projection == projection_australian_map_grid ||
                              values.hemisphere == hemisphere_north ||
                              values.hemisphere == hemisphere_south || values.false_northing != 0.0;
  return values.zone_number != 0 && one_hemisphere;
}

GeographicPlace en2ll(const TransformParameters& parameters, const MapPlace& place) {
  const std::int32_t projection = projection_of(parameters);
  if (projection == projection_geographic) {
    const GeographicPlace same{place.northing, place.easting};
    require_earthly(same);
    return {same.latitude, around_zero(same.longitude)};
  }
  double meridian = 0.0;
  std::int32_t zone_number = 0;
  if (has_zones(projection)) {
    const double given = parameters[parameter_zone_number];
    zone_number = given != 0.0 ? static_cast<std::int32_t>(given) : place.zone_number;
    if (zone_number == 0 || parameters[parameter_northing_north] != parameters[parameter_northing_south]) {
      throw std::runtime_error("the coordinate system doesn't say in which zone and hemisphere it is");
    }
    meridian = central_meridian(zone_number, parameters[parameter_zone_width]);
  }
  const GeographicPlace found = unproject(parameters, place.easting - parameters[parameter_false_easting],
                                          place.northing - parameters[parameter_northing_north]);
  if (std::abs(found.longitude) >= far_from_zone && has_zones(projection)) {
    throw outside();
  }
  return {found.latitude, around_zero(found.longitude + meridian)};
}

}  // namespace numerics::geodesy
