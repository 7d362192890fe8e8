// station_places.h: where the stations of a line are, in metres on one map.
#pragma once
#include <optional>
#include <string_view>
#include <vector>

#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

struct PlacedStation {
  double station = 0.0;
  std::optional<numerics::geodesy::MapPlace> place;  // none: nobody has said where it is
};

struct StationPlaces {
  std::vector<PlacedStation> stations;  // those with readings, ascending
  /// The places are those of the sites. Otherwise some are the map places of the stations, and these may be
  /// what a file says of its sensors.
  bool of_sites = true;

  [[nodiscard]] bool complete() const;
};

/// The places of a line's sites by the survey's projection, in one zone; by UTM on WGS 84 where the survey
/// has none or one that isn't true to lengths. Where sites are missing, the stations' own map places stand in
/// for them if that completes the line. Needs an open survey; throws dao::Error.
StationPlaces station_places(std::string_view line);

}  // namespace Module_projections
