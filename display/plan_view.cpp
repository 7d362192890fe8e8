#include "display/plan_view.h"

#include <algorithm>
#include <cmath>

#include "core/session_state.h"

namespace Module_display_data {

namespace {

constexpr double zoom_step = 1.585;
constexpr double picking_distance = 10000.0;  // m

struct Range {
  double minimum;
  double maximum;
  [[nodiscard]] double length() const { return maximum - minimum; }
  [[nodiscard]] double middle() const { return 0.5 * (minimum + maximum); }
};

/// A range with a length, whatever the stations have set.
Range usable_range(double minimum, double maximum) {
  if (minimum < maximum) {
    return {minimum, maximum};
  }
  return minimum == maximum ? Range{minimum - 1.0, maximum + 1.0} : Range{-1.0, 1.0};
}

void widen_to(Range& range, double length) {
  const double half = 0.5 * (length - range.length());
  range.minimum -= half;
  range.maximum += half;
}

/// The first of the nearest stations that are less than `limit` m away; -1 if no station is.
std::int32_t nearest_station(PlanPoint picture, double picture_height, double limit) {
  if (!(session().plan_window.plan_y_scale > 0.0)) {
    return -1;
  }
  const PlanPoint point = to_survey(picture, picture_height);
  std::int32_t nearest = -1;
  double nearest_distance = limit;
  for (std::int32_t index = 1; index <= session().station_count; ++index) {
    const PlanPoint place = station_place(index);
    const double distance = std::hypot(place.x - point.x, place.y - point.y);
    if (distance < nearest_distance) {
      nearest_distance = distance;
      nearest = index;
    }
  }
  return nearest;
}

void fit_base(double picture_width, double picture_height) {
  PlanWindow& window = session().plan_window;
  if (window.plan_x_extent > 0.0 && window.plan_y_extent > 0.0) {
    const bool fits_in_width =
        !(window.plan_x_extent / window.plan_y_extent > picture_width / picture_height);
    window.plan_base = 1.1 * (fits_in_width ? window.plan_y_extent : window.plan_x_extent);
  }
}

}  // namespace

void StationLimits::include(double x, double y) {
  x_min = std::min(x_min, x);
  x_max = std::max(x_max, x);
  y_min = std::min(y_min, y);
  y_max = std::max(y_max, y);
}

void fit_plan_window() {
  SessionState& state = session();
  state.x_column = state.coord_system == 1 ? 3 : 1;
  state.y_column = state.x_column + 1;
  StationLimits limits;
  for (std::int32_t index = 1; index <= state.station_count; ++index) {
    const PlanPoint place = station_place(index);
    limits.include(place.x, place.y);
  }
  Range x = usable_range(limits.x_min, limits.x_max);
  Range y = usable_range(limits.y_min, limits.y_max);
  if (x.length() < y.length()) {
    widen_to(x, y.length());
  } else {
    widen_to(y, x.length());
  }
  PlanWindow& window = session().plan_window;
  window = {};
  window.plan_x_min = x.minimum;
  window.plan_x_max = x.maximum;
  window.plan_y_min = y.minimum;
  window.plan_y_max = y.maximum;
  window.plan_x_centre = x.middle();
  window.plan_y_centre = y.middle();
  window.plan_x_extent = x.length();
  window.plan_y_extent = y.length();
}

bool choose_coordinates(std::int32_t coord_system) {
  if (session().updating_controls || session().coord_system == coord_system || coord_system < 0) {
    return false;
  }
  session().coord_system = coord_system;
  fit_plan_window();
  return true;
}

int resize_plan_window(double picture_width, double picture_height, int scale_value) {
  PlanWindow& window = session().plan_window;
  if (!(picture_width > 0.0) || !(picture_height > 0.0)) {
    return scale_value;  // nothing can be seen in such a picture
  }
  if (window.plan_zoom == 0.0F) {
    fit_base(picture_width, picture_height);
    scale_value = 0;
  }
  window.plan_zoom = static_cast<float>(std::pow(zoom_step, -scale_value));
  window.plan_y_extent = window.plan_base * double{window.plan_zoom};
  window.plan_y_min = window.plan_y_centre - 0.5 * window.plan_y_extent;
  window.plan_y_max = window.plan_y_centre + 0.5 * window.plan_y_extent;
  window.plan_y_scale = picture_height / window.plan_y_extent;
  window.plan_x_extent = window.plan_y_extent / picture_height * picture_width;
  window.plan_x_min = window.plan_x_centre - 0.5 * window.plan_x_extent;
  window.plan_x_max = window.plan_x_centre + 0.5 * window.plan_x_extent;
  window.plan_x_scale = picture_width / window.plan_x_extent;
  return scale_value;
}

void pan_plan_x(int value) {
  session().plan_window.plan_x_centre -=
      static_cast<double>(value) / 10.0 * session().plan_window.plan_x_extent;
}

void pan_plan_y(int value) {
  session().plan_window.plan_y_centre -=
      static_cast<double>(value) / 10.0 * session().plan_window.plan_y_extent;
}

void drag_plan(PlanPoint from, PlanPoint to) {
  PlanWindow& window = session().plan_window;
  if (window.plan_y_scale > 0.0) {
    window.plan_x_centre -= (to.x - from.x) / window.plan_x_scale;
    window.plan_y_centre += (to.y - from.y) / window.plan_y_scale;
  }
}

void keep_place_through_zoom(PlanPoint picture, double picture_height, int from_value, int to_value) {
  PlanWindow& window = session().plan_window;
  if (window.plan_y_scale > 0.0) {
    const PlanPoint place = to_survey(picture, picture_height);
    const double shrink = std::pow(zoom_step, from_value - to_value);
    window.plan_x_centre = place.x + (window.plan_x_centre - place.x) * shrink;
    window.plan_y_centre = place.y + (window.plan_y_centre - place.y) * shrink;
  }
}

PlanPoint station_place(std::int32_t station_index) {
  const StationPlace& place = session().station_table[static_cast<std::size_t>(station_index) - 1];
  return session().x_column == 3 ? PlanPoint{place.map_x, place.map_y}
                                 : PlanPoint{place.local_x, place.local_y};
}

PlanPoint to_picture(PlanPoint place, double picture_height) {
  const PlanWindow& window = session().plan_window;
  return {(place.x - window.plan_x_min) * window.plan_x_scale,
          picture_height - (place.y - window.plan_y_min) * window.plan_y_scale};
}

PlanPoint to_survey(PlanPoint picture, double picture_height) {
  const PlanWindow& window = session().plan_window;
  return {picture.x / window.plan_x_scale + window.plan_x_min,
          (picture_height - picture.y) / window.plan_y_scale + window.plan_y_min};
}

double scale_bar_length(double picture_width) {
  const double longest = 0.25 * picture_width / session().plan_window.plan_x_scale;
  const double decade = std::pow(10.0, std::floor(std::log10(longest)));
  if (longest >= 5.0 * decade) {
    return 5.0 * decade;
  }
  return longest >= 2.0 * decade ? 2.0 * decade : decade;
}

bool in_plan_window(PlanPoint place) {
  const PlanWindow& window = session().plan_window;
  return place.x > window.plan_x_min && place.x < window.plan_x_max && place.y > window.plan_y_min &&
         place.y < window.plan_y_max;
}

std::int32_t pick_station(PlanPoint picture, double picture_height) {
  return nearest_station(picture, picture_height, picking_distance);
}

std::int32_t station_under(PlanPoint picture, double picture_height, double within) {
  return nearest_station(picture, picture_height, within / session().plan_window.plan_y_scale);
}

}  // namespace Module_display_data
