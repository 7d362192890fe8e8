// line_pieces.h: the path of a line over the earth, for maps that end at 180 degrees of longitude.
#pragma once
#include <string>
#include <vector>

#include "formats/places/site_marks.h"

namespace formats::places {

struct PathPoint {
  double longitude = 0.0;  // degrees, -180 to 180
  double latitude = 0.0;

  bool operator==(const PathPoint&) const = default;
};

/// From station to station, the short way around the earth. It is cut where it crosses 180 degrees, as RFC
/// 7946 (3.1.9) asks: otherwise a map draws it around the whole earth. Each piece has two points and more;
/// there is none for fewer than two stations.
std::vector<std::vector<PathPoint>> line_pieces(const std::vector<SiteMark>& sites);

/// With seven decimals, which are a centimetre on the ground.
std::string degrees_text(double degrees);

}  // namespace formats::places
