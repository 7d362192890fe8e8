// site_projection.h: the one map system in which the sites of a line or a survey are put beside one another.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/survey_lists.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

using OptionalPlace = std::optional<numerics::geodesy::GeographicPlace>;

/// Latitude and longitude of each station that has a site with a place, in the order of the stations. Needs
/// an open survey; throws dao::Error.
/// @param stations  of the line, ascending
std::vector<OptionalPlace> places_of_sites(std::string_view line,
                                           const std::vector<Module_database::ListedStation>& stations);

/// Lengths on the map of the survey's projection are those on the ground, but for the scale factor.
bool survey_projection_is_true_to_lengths();

struct SiteSystem {
  numerics::geodesy::TransformParameters parameters{};
  std::string name;  // of the survey's projection, or "UTM on WGS 84"
};

/// The survey's projection, or UTM on WGS 84 where there is none or one that isn't true to lengths; in the
/// zone of the median place, so that sites on both sides of a zone's border stay in one piece.
/// @return none without a place, or if the median is no place on the earth
std::optional<SiteSystem> system_of_sites(std::span<const OptionalPlace> places);

/// The system of the stations' map places, or why there is none.
struct MapSystem {
  std::optional<numerics::geodesy::TransformParameters> parameters;
  std::string why_not;  // a sentence without its full stop
};

/// The survey's projection, with the zone and hemisphere that the sites of a line have where it names none;
/// without one, UTM on WGS 84 where the sites' latitudes and longitudes show that the map places are of it.
/// None where the sites show that the map places are of another system, and where nothing is known. Needs an
/// open survey; throws dao::Error.
MapSystem system_of_map_places(std::string_view line);

/// None for a place that the system can't show.
std::optional<numerics::geodesy::MapPlace> projected(const numerics::geodesy::TransformParameters& system,
                                                     const OptionalPlace& place);

/// How far true north lies clockwise of the grid's north at a place, degrees; 0 where it can't be told. An
/// azimuth from true north, and this, is the direction on the map.
double true_north_on_grid(const numerics::geodesy::TransformParameters& system,
                          const numerics::geodesy::GeographicPlace& place);

}  // namespace Module_projections
