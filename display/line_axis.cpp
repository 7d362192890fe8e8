#include "display/line_axis.h"

#include "core/trap_errors.h"

namespace Module_display_data {

bool LineAxis::take_line(const std::string& line) {
  if (known_ && distances_.line == line) {
    return false;
  }
  known_ = true;
  distances_ = {};
  distances_.line = line;
  static_cast<void>(trap_errors("An error occurred while looking for the places of the stations: ",
                                [&] { distances_ = Module_projections::line_distances(line); }));
  return true;
}

std::string LineAxis::choose(PositionSource source) {
  source_ = source;
  return source == PositionSource::distances ? distances_.refusal : std::string();
}

std::optional<double> LineAxis::x_of(double station) const {
  return by_distance() ? distances_.at(station) : std::optional(station);
}

std::optional<LineNotice> LineAxis::take_notice() {
  LineNotice notice{distances_.warning, distances_.known()};
  if (source_ == PositionSource::distances) {
    notice = {distances_.refusal, false};
  }
  return !notice.text.empty() && told_.insert(distances_.line).second ? std::optional(notice) : std::nullopt;
}

}  // namespace Module_display_data
