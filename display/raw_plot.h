// raw_plot.h: the graphs of a scan rate's repeats with their average.
#pragma once
#include <string>

#include "display/both_modes.h"
#include "display/pane_plot.h"

namespace Module_display_data {

/// The repeat data set as graphs: series 0 is the average, series k repeat k. Empty without data.
/// @param fixed_scale the axes of values are those of the whole line
/// @param modes with both, the slots of other_mode() follow, each mode in its colour
GraphPair raw_plot(bool fixed_scale, Modes modes = Modes::selected);

/// "Average/raw for 100"
std::string raw_label();

/// "Average" or "Repeat 2" for a slot, from 0. With two modes on show the data type, too: "Repeat 2, ExHy".
std::string raw_series_label(std::size_t slot);

}  // namespace Module_display_data
