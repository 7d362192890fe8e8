// graticule.h: the lines of latitude and longitude over a part of a map, computed without any background map.
//
// Angles in degrees, north and east positive; lengths in metres.
#pragma once
#include <string>
#include <vector>

#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_projections {

/// A rectangle of map coordinates.
struct MapPart {
  double west = 0.0;
  double east = 0.0;
  double south = 0.0;
  double north = 0.0;
};

struct GraticuleLine {
  bool meridian = false;                            // else a parallel
  std::string label;                                // "152°30'E"
  std::vector<numerics::geodesy::MapPlace> places;  // from south to north, or west to east
};

/// The meridians and parallels at round values that cross a part of a map; two to about `most` of each kind.
/// They reach beyond the part: whoever draws them clips. Empty where the system has no such places.
std::vector<GraticuleLine> graticule(const numerics::geodesy::TransformParameters& system,
                                     const MapPart& part, int most = 6);

/// "33°45'S", "151°12'30\"E": degrees, with the minutes and seconds that a round step needs.
std::string graticule_label(double degrees, bool meridian);

}  // namespace Module_projections
