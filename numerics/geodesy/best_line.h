// best_line.h: the straight line that places lie on, if they do.
#pragma once
#include <optional>
#include <span>

#include "numerics/geodesy/coordinate_transforms.h"

namespace numerics::geodesy {

/// The straight line with the least sum of squared distances from places on a map: through their mean, along
/// the eigenvector of their covariance (Pearson 1901, Philosophical Magazine 2, 559-572).
struct BestLine {
  double mean_easting = 0.0;  // m
  double mean_northing = 0.0;
  double direction_east = 0.0;  // of length 1; from the first place towards the last one
  double direction_north = 0.0;
  double length = 0.0;        // m, between the outermost places along the line
  double rms_distance = 0.0;  // m, of the places from the line

  /// Metres along the line; 0 at the mean of the places.
  [[nodiscard]] double along(const MapPlace& place) const;
  /// Metres beside the line, to its right positive.
  [[nodiscard]] double beside(const MapPlace& place) const;
  /// Whether the places count as a line: their RMS distance is below a tenth of the length.
  [[nodiscard]] bool is_line() const { return rms_distance < 0.1 * length; }
};

/// @return none if there are fewer than two different places; places that aren't finite are left out
std::optional<BestLine> best_line(std::span<const MapPlace> places);

}  // namespace numerics::geodesy
