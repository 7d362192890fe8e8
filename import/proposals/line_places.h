// line_places.h: the sites of one line on the map: whether they lie on a line, and how far along it they are.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "numerics/geodesy/best_line.h"
#include "projections/coord_system.h"

namespace Module_data_file {

/// The zone of Universal Transverse Mercator on WGS 84 that has the median longitude of the places, on the
/// side of the equator where their median latitude is; decoded. The places are not empty.
Module_projections::CoordSystem utm_zone_of(std::span<const numerics::geodesy::GeographicPlace> places);

/// Brings places onto one map, in metres. The survey's own zone serves if its projection is one, so that a
/// line goes on as it began; else the zone of the places.
class PlaceMap {
 public:
  /// @param survey its projection, if it has one
  PlaceMap(std::span<const numerics::geodesy::GeographicPlace> places,
           const std::optional<Module_projections::CoordSystem>& survey);

  /// @return none for a place that the zone can't show
  [[nodiscard]] std::optional<numerics::geodesy::MapPlace> on_map(
      const numerics::geodesy::GeographicPlace& place) const;

 private:
  numerics::geodesy::TransformParameters parameters_{};
};

/// A site of the line that the survey has already.
struct KnownSite {
  numerics::geodesy::MapPlace place;
  double station = 0.0;
};

/// "two parallel lines, 220 m apart".
std::string parallel_lines_text(double apart);

class LinePlaces {
 public:
  /// @param places of the import, in the order of its files
  /// @param known the survey's sites of the line: they keep zero and direction
  LinePlaces(const std::vector<numerics::geodesy::MapPlace>& places, const std::vector<KnownSite>& known);

  /// Whether the places are on a line: their RMS distance from it is below a tenth of its length. Places that
  /// are far away from all others don't count, up to a tenth of them.
  [[nodiscard]] bool is_line() const { return line_ && line_->is_line() && !many_far_away_; }
  /// Whether the survey's stations of the line are metres along it; true without any.
  [[nodiscard]] bool known_are_distances() const { return known_are_distances_; }
  [[nodiscard]] bool has_known() const { return has_known_; }
  /// How far two parallel lines are apart that the places lie on beside one another, m; none if they don't.
  [[nodiscard]] std::optional<double> parallel_lines() const { return parallel_lines_; }
  /// Of how many different places, the survey's among them.
  [[nodiscard]] std::size_t places() const { return count_; }
  [[nodiscard]] double length() const { return line_ ? line_->length : 0.0; }
  [[nodiscard]] double rms_distance() const { return line_ ? line_->rms_distance : 0.0; }

  /// Whole metres along the line; 0 at the end nearer the first file's site, or where the survey has it.
  [[nodiscard]] double station(const numerics::geodesy::MapPlace& place) const;
  /// Whether a place is far off the line, or far away from all others.
  [[nodiscard]] bool is_far_off(const numerics::geodesy::MapPlace& place) const;

 private:
  void find_middle(std::span<const numerics::geodesy::MapPlace> places);
  [[nodiscard]] bool is_far_away(const numerics::geodesy::MapPlace& place) const;
  void set_zero(const std::vector<numerics::geodesy::MapPlace>& places);
  void set_zero_of_known(const std::vector<KnownSite>& known);

  std::optional<numerics::geodesy::BestLine> line_;
  numerics::geodesy::MapPlace middle_;  // medians of the places
  std::size_t count_ = 0;
  std::optional<double> parallel_lines_;
  double far_ = 0.0;        // m from the middle; 0: too few places to tell
  double direction_ = 1.0;  // of the stations along the line, 1 or -1
  double zero_ = 0.0;       // station at the line's mean
  bool many_far_away_ = false;
  bool has_known_ = false;
  bool known_are_distances_ = true;
};

}  // namespace Module_data_file
