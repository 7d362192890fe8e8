// profile_plot.h: the graphs of a line: a curve along its stations for each frequency.
#pragma once
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "display/line_axis.h"
#include "display/pane_plot.h"

namespace Module_display_data {

/// The columns of the profile data set in the order of their places on an axis of its line; without distances
/// that is their own order.
std::vector<std::size_t> profile_order(const LineAxis& axis = {});

/// The profile data set as graphs: series i is frequency i of the data set, point j the column that is at j
/// in profile_order. Resistivity is multiplied by each station's static factor. Masked points and readings
/// always show, whatever is hidden elsewhere: a gap along the line would look like a station without data.
/// Readings that were taken out are grey. Empty without data. A station without a place on the axis isn't
/// drawn.
GraphPair profile_plot(const LineAxis& axis = {});

/// Why the graphs of the line have nothing to show: a line often has curves with one reference only. Empty if
/// they have, or if there is no line.
std::string empty_profile_text();

/// Makes the curve of one frequency stand out of a profile.
/// @param frequency_index  in the data set, from 0
void emphasise(GraphPair& profile, std::size_t frequency_index);

/// Texts for a pane of a profile. Of a curve that stands out: its value at each point. Without one: each
/// curve's name at its last point, high frequencies first.
/// @param name_of  a frequency (Hz) as the program's axes name it
std::vector<graph::PlotLabel> profile_labels(const PanePlot& pane, std::optional<std::size_t> frequency_index,
                                             const std::function<std::string(float)>& name_of);

/// The resistivities, without static factors, and phases of the line that decide the limits of axes: of the
/// merged curves that are used, or of all where none is.
/// @param hide_masked  masked points and components that are switched off don't decide either
Module_averaged_data::CurveExtents line_extents(bool hide_masked);

}  // namespace Module_display_data
