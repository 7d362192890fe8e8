#include "formats/places/line_pieces.h"

#include <cmath>
#include <utility>

#include "core/number_text.h"

namespace formats::places {

namespace {

constexpr double half_turn = 180.0;
constexpr double full_turn = 360.0;

bool crosses_date_line(const PathPoint& from, const PathPoint& to) {
  return std::abs(to.longitude - from.longitude) > half_turn;
}

/// Where the way leaves its side of the map, at +180 or -180.
PathPoint border_point(const PathPoint& from, const PathPoint& to) {
  const double border = std::copysign(half_turn, from.longitude);
  const double beyond = to.longitude + std::copysign(full_turn, from.longitude);
  const double way = beyond - from.longitude;
  const double share = way != 0.0 ? (border - from.longitude) / way : 1.0;  // 0: both lie on the border
  return {border, std::lerp(from.latitude, to.latitude, share)};
}

/// A station on the border itself is the end of its piece already.
void add_unless_there(std::vector<PathPoint>& piece, const PathPoint& point) {
  if (piece.empty() || piece.back() != point) {
    piece.push_back(point);
  }
}

}  // namespace

std::vector<std::vector<PathPoint>> line_pieces(const std::vector<SiteMark>& sites) {
  std::vector<std::vector<PathPoint>> pieces(1);
  for (const SiteMark& site : sites) {
    const PathPoint next{site.longitude, site.latitude};
    if (!pieces.back().empty() && crosses_date_line(pieces.back().back(), next)) {
      const PathPoint border = border_point(pieces.back().back(), next);
      add_unless_there(pieces.back(), border);
      pieces.push_back({{-border.longitude, border.latitude}});
      add_unless_there(pieces.back(), next);
    } else {
      pieces.back().push_back(next);
    }
  }
  std::erase_if(pieces, [](const std::vector<PathPoint>& piece) { return piece.size() < 2; });
  return pieces;
}

std::string degrees_text(double degrees) { return format_number(degrees, "0.0000000"); }

}  // namespace formats::places
