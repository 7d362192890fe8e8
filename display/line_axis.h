// line_axis.h: what the x axis of a line's profile counts: station numbers, or metres along the line.
#pragma once
#include <optional>
#include <set>
#include <string>

#include "projections/line_distances.h"

namespace Module_display_data {

using Module_projections::PositionSource;

/// What the user is told of a line, once.
struct LineNotice {
  std::string text;
  bool offers_distances = false;  // choosing them mends what the text says
};

/// The choice of a session, and what the line that is shown makes of it. By default station numbers count.
class LineAxis {
 public:
  /// Forgets everything: for another survey.
  void reset() { *this = {}; }
  /// The survey has changed: take_line looks for the places again.
  void forget_places() { known_ = false; }
  /// Goes to a line. What can't be read is reported, and the line then has no distances.
  /// @return whether its places were looked for
  bool take_line(const std::string& line);
  /// @return why the line has no distances, if they were chosen; a line that has some gets them nevertheless
  std::string choose(PositionSource source);

  [[nodiscard]] bool by_distance() const {
    return source_ == PositionSource::distances && distances_.known();
  }
  /// As far as the line allows it.
  [[nodiscard]] PositionSource source() const {
    return by_distance() ? PositionSource::distances : PositionSource::station_numbers;
  }
  /// Where a station is on the axis, m; none if the line has distances but no such station.
  [[nodiscard]] std::optional<double> x_of(double station) const;
  [[nodiscard]] const char* title() const { return by_distance() ? "Distance (m)" : "Station (m)"; }
  /// What there is to say of the line, the first time.
  std::optional<LineNotice> take_notice();

 private:
  PositionSource source_ = PositionSource::station_numbers;
  Module_projections::LineDistances distances_;
  bool known_ = false;          // the distances of the line have been looked for
  std::set<std::string> told_;  // lines
};

}  // namespace Module_display_data
