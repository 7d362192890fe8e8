// station_plot.h: the graphs of a station's merged curve, averages and neighbours.
#pragma once
#include <string>

#include "display/both_modes.h"
#include "display/pane_plot.h"

namespace Module_display_data {

inline constexpr const char* nothing_in_use = " (rests on no reading in use)";

/// The station data set as graphs, a series for each slot. All resistivities are multiplied by the static
/// factor of the merged curve, so that the averages stay comparable with it. Empty without data.
/// @param fixed_scale the axes of values are those of the whole line
/// @param modes with both, the slots of other_mode() follow, each mode in its colour
GraphPair station_plot(bool fixed_scale, Modes modes = Modes::selected);

/// "Merge/averages for 100"; where a curve rests on nothing that is in use, it says so.
std::string station_label(Modes modes = Modes::selected);

/// What a slot (from 0) is: "Merged data", "Merged for 200", "Averaged data for 256", "Averaged file for
/// 256", "Merged file data". With two modes on show the data type, too: "Merged data, ExHy". One that rests
/// on nothing that is in use has nothing_in_use behind it.
std::string station_series_label(std::size_t slot);

}  // namespace Module_display_data
