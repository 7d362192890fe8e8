// chosen_points.h: the points that the user has drawn a rectangle around, to mask or unmask them together.
//
// Series and points are places in the plots, which are places in the data sets. What is chosen is chosen in
// all graphs that show the same reading. With two modes on show the points of both can be chosen.
#pragma once
#include <cstddef>
#include <span>
#include <string>

#include "display/marked_points.h"
#include "display/pane_plot.h"

namespace Module_display_data {

using Module_averaged_data::Component;
using Module_averaged_data::Edit;

struct PlotPlace {
  std::size_t series = 0;
  std::size_t point = 0;
};

// Choose points in addition to those that are. Neighbours and further merged curves can't be masked and are
// left out, as are places that aren't there.
void choose_raw_points(Component component, std::span<const PlotPlace> places);
void choose_station_points(Component component, std::span<const PlotPlace> places);
/// Points are columns of the profile data set, series are its frequencies.
void choose_profile_points(Component component, std::span<const PlotPlace> places);
void choose_points(std::span<const MarkedPoint> points);

void forget_chosen_points();
/// Forgets those that no graph shows any more, as another station is displayed or masked points are hidden.
void keep_chosen_points_shown();

[[nodiscard]] std::size_t chosen_count();
[[nodiscard]] bool is_chosen(const MarkedPoint& point);

/// "12 points marked: Delete masks them, Shift+Delete unmasks them, Esc leaves them"; empty without any.
[[nodiscard]] std::string chosen_text();

/// What is added to the style of a point that is chosen, marked, both or neither.
[[nodiscard]] int ring_of(const MarkedPoint& point);

/// Rings the chosen and marked points of the reading that is the last series of both panes.
void ring_last_curve(GraphPair& plot, const Module_database::StoredReading& reading);

/// Whether every chosen point that has a value is unmasked already, or masked, so that there is nothing to
/// do.
[[nodiscard]] bool chosen_points_are(bool unmasked);

/// Masks or unmasks what is chosen, as one command to be undone, and forgets the choice. Without effect while
/// session().updating_controls is set. A choice that has changed nothing stays.
[[nodiscard]] Edit mask_chosen_points(bool counts);

}  // namespace Module_display_data
