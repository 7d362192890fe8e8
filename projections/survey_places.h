// survey_places.h: where the stations of one or several lines are in plan, and what is known of that.
//
// Lengths m; angles in degrees, clockwise.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

/// What places are taken from.
enum class PlaceSource : std::uint8_t {
  sites,  // latitudes and longitudes of the sites, projected
  map,    // map coordinates of the stations
  local   // their local coordinates, which follow from line and station number
};

struct SurveyPlace {
  std::string line;
  double station = 0.0;
  std::int32_t StationID = 0;
  std::optional<numerics::geodesy::MapPlace> place;  // none: nobody has said where it is
  double true_north = 0.0;  // how far it lies clockwise of up on the plan; 0 where it isn't known
};

struct SurveyPlaces {
  std::vector<SurveyPlace> stations;  // those with readings, by line as given, ascending
  PlaceSource source = PlaceSource::local;
  std::string system;                                   // name of the map system, of the places of sites
  numerics::geodesy::TransformParameters parameters{};  // of that system
};

/// The best source that has a place for any of the stations; a plan doesn't mix local coordinates with
/// others. Where the survey's projection is true to lengths, the stations' own map places, which are of that
/// projection, stand in for sites without a place. Needs an open survey; throws dao::Error.
SurveyPlaces survey_places(std::span<const std::string> lines);

}  // namespace Module_projections
