// line_distances.h: the distances of a line's stations along the best straight line through their places.
//
// Lengths m. A station number is meant to be a distance, too; where it isn't, what is drawn and inverted by
// station numbers has wrong distances, and the user is to know.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "projections/station_places.h"

namespace Module_projections {

/// What the positions of a line's stations are taken from.
enum class PositionSource : std::uint8_t { station_numbers, distances };

struct LineDistances {
  std::string line;
  std::vector<double> stations;   // that have readings, ascending
  std::vector<double> distances;  // of each of them, 0 at the first one; empty if there are none
  std::string refusal;            // why there are none, a sentence without its point; empty if there are
  std::string warning;            // likewise, that station numbers are no distances; empty if they are, or if
                                  // nothing is known

  [[nodiscard]] bool known() const { return !distances.empty(); }
  /// The distance of a station; none if there are none, or no such station.
  [[nodiscard]] std::optional<double> at(double station) const;
};

/// Distances grow with the station numbers. There are none if a station has no place or the places lie on no
/// line. Station numbers are distances if they differ from them by a constant, within a tenth of the mean
/// spacing of the places; where these lie on no line, from the way from station to station.
LineDistances line_distances(std::string_view line, const StationPlaces& places);

/// Those of a line of the open survey. Throws dao::Error.
LineDistances line_distances(std::string_view line);

}  // namespace Module_projections
