// coordinate_transforms.h: from latitude and longitude to map coordinates and back, on PROJ.
//
// Conventions: angles in degrees, north and east positive; lengths in metres. Latitude and longitude are on
// the system's own datum: nothing is shifted from one datum to another, so that no shift grid is needed and a
// result is the same on every machine. PROJ never uses the network. Zones are computed with Engsager and
// Poder's series (2007), which holds far beyond a zone's borders.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace numerics::geodesy {

enum Projection : std::int32_t {
  projection_geographic = 0,  // longitude and latitude themselves
  projection_australian_map_grid = 1,
  projection_utm = 2,
  projection_lambert_conformal = 3,
  projection_albers = 4,
  projection_equidistant_conic = 5,
  projection_epsg_3857 = 6,
};

enum Hemisphere : std::int32_t {
  hemisphere_from_latitude = 0,  // also any number that isn't listed here
  hemisphere_north = 1,
  hemisphere_south = 2,
};

/// The twelve values that define a map coordinate system. Which of them count depends on the projection.
struct CoordinateSystemValues {
  std::int32_t projection = projection_geographic;
  std::int32_t datum = 0;  // EPSG number of a geographic coordinate system, see find_datum
  std::int32_t hemisphere = hemisphere_from_latitude;
  double origin_longitude = 0.0;     // central meridian of a conic projection
  double origin_latitude = 0.0;      // latitude of its false origin
  double standard_parallel_1 = 0.0;  // conic projections
  double standard_parallel_2 = 0.0;
  double scale_factor =
      0.0;  // 0: the usual one, 0.9996 of a zone, 1 of Lambert's projection; others have none
  double false_easting = 0.0;    // 0 in a zone: 500 000
  double false_northing = 0.0;   // 0 in a zone: 10 000 000 south of the equator
  std::int32_t zone_number = 0;  // from 1 at 180 W eastwards; 0: the zone that the longitude lies in
  double zone_width = 0.0;       // degrees

  bool operator==(const CoordinateSystemValues&) const = default;
};

/// What ll2en works with; computed once for a system. All zeros is no system.
using TransformParameters = std::array<double, 20>;

struct GeographicPlace {
  double latitude = 0.0;   // degrees
  double longitude = 0.0;  // degrees
};

struct MapPlace {
  double easting = 0.0;          // m
  double northing = 0.0;         // m
  std::int32_t zone_number = 0;  // 0 for a projection without zones
};

struct Datum {
  std::string name;
  std::string ellipsoid;
  double semi_major_axis = 0.0;  // m
  double semi_minor_axis = 0.0;
};

/// The datum of a number: that of the geographic coordinate system with this EPSG number, such as 4326 for
/// WGS 84, if its longitudes count from Greenwich in degrees. Throws std::runtime_error if PROJ's tables are
/// missing.
std::optional<Datum> find_datum(std::int32_t number);

/// Numbers of the datums that surveys use most, for a list in a window.
std::span<const std::int32_t> common_datums();

/// The words for a code; "unknown" for one without a meaning.
const char* projection_name(std::int32_t projection);
const char* hemisphere_name(std::int32_t hemisphere);

/// The central meridian of a zone that counts from 1.
double central_meridian(double zone_number, double zone_width);

/// True if the datum is unknown and ll2en uses another ellipsoid for it: WGS 84's, for the Australian Map
/// Grid the Australian National Spheroid. The projections 0 and 6 need no datum.
bool datum_is_replaced(const CoordinateSystemValues& values);

/// The number of the datum whose ellipsoid replaces that of an unknown one.
std::int32_t substitute_datum(std::int32_t projection);

/// Throws std::runtime_error, with the reason, for values that define no system.
TransformParameters crdprm(const CoordinateSystemValues& values);

/// Throws std::runtime_error for a place that the system can't show.
MapPlace ll2en(const TransformParameters& parameters, const GeographicPlace& place);

/// Whether map coordinates alone say where a place is. Zones have the same coordinates one beside the other,
/// and so have both hemispheres: a system that takes either from the place has no way back.
bool leads_back(const CoordinateSystemValues& values);

/// The place of which ll2en makes these map coordinates; the longitude lies within -180 to 180. Throws
/// std::runtime_error for coordinates that the system has for no place, or for more than one. A zone number
/// of the place counts where the system has none.
GeographicPlace en2ll(const TransformParameters& parameters, const MapPlace& place);

}  // namespace numerics::geodesy
