// profile_plot.h: the graphs of a line: a curve along its stations for each frequency.
#pragma once
#include "display/pane_plot.h"

namespace Module_display_data {

/// The profile data set as graphs: series i is frequency i of the data set, point j its column j. Resistivity
/// is multiplied by each station's static factor. Masked points and readings always show, whatever is hidden
/// elsewhere: a gap along the line would look like a station without data. Empty without data.
GraphPair profile_plot();

}  // namespace Module_display_data
