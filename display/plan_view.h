// plan_view.h: the window through which the plan shows the stations, and its arithmetic.
//
// The window is session().plan_window. Conventions: survey units are m in the coordinates chosen; picture
// units are those of the picture's width and height, with Y growing downward.
#pragma once
#include <cstdint>

namespace Module_display_data {

/// Limits of the stations in one kind of coordinates; the wrong way round until a station sets them.
struct StationLimits {
  double x_min = 10000000.0;
  double x_max = -10000000.0;
  double y_min = 10000000.0;
  double y_max = -10000000.0;
  void include(double x, double y);
};

struct PlanPoint {
  double x = 0.0;
  double y = 0.0;
};

/// Fits session().plan_window to the stations in the session's coordinates (coord_system), as a square; sets
/// x_column and y_column.
void fit_plan_window();

/// Chooses local (0) or map (1) coordinates. @return false if nothing changes
bool choose_coordinates(std::int32_t coord_system);

/// Brings the window to a picture of this size. A window that is to be fitted takes all stations in.
/// @param scale_value  value of the scale bar: each step up shows 1/1.585 of the height before
/// @return the value that the scale bar has to show: 0 if the window was fitted again
int resize_plan_window(double picture_width, double picture_height, int scale_value);

/// Moves the window by tenths of its size against the bars' values.
void pan_plan_x(int value);
void pan_plan_y(int value);

/// Moves the window so that what was at one point of the picture comes to lie at another.
void drag_plan(PlanPoint from, PlanPoint to);

/// Moves the window's centre so that the place at a point of the picture stays there while the scale bar goes
/// from one value to another.
void keep_place_through_zoom(PlanPoint picture, double picture_height, int from_value, int to_value);

/// Where a station lies, in the coordinates chosen. @param station_index from 1
PlanPoint station_place(std::int32_t station_index);

/// From survey to picture units and back. Need a window that was brought to a picture.
PlanPoint to_picture(PlanPoint place, double picture_height);
PlanPoint to_survey(PlanPoint picture, double picture_height);

/// The longest of 1, 2, 5, 10, 20, ... m that takes at most a quarter of a picture's width; likewise below 1
/// m.
double scale_bar_length(double picture_width);

/// Strictly inside the window.
bool in_plan_window(PlanPoint place);

/// The station nearest to a point of the picture, from 1; the first of equally near ones. -1 if none is
/// within 10000 m or nothing has been drawn.
std::int32_t pick_station(PlanPoint picture, double picture_height);

/// The station whose dot lies within so many picture units of a point, from 1; -1 if no dot does.
std::int32_t station_under(PlanPoint picture, double picture_height, double within);

}  // namespace Module_display_data
