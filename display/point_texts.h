// point_texts.h: what a tool tip says about a point: "Repeat 2 (event 5): 12.5000 Hz, 103.27 ohm-m, masked",
// and in a line below the field file. What its bar is and how large stands behind the value, "103.27 ± 4.10
// ohm-m (standard deviation of 4 repeats)", "103.27 ± 3.20 ohm-m (error of the file)". Where the
// station's site has a name, the station comes last, "Station 1250 (ET001)".
//
// Series and points are places in the plots, as in graph_clicks.h; a place that isn't there gives no text.
#pragma once
#include <cstddef>
#include <string>

#include "reduction/edits/masks.h"

namespace Module_display_data {

using Module_averaged_data::Component;

/// The text of a point of the raw, the station and the profile graph.
std::string raw_point_text(std::size_t series, std::size_t point, Component component);
std::string station_point_text(std::size_t series, std::size_t point, Component component);
std::string profile_point_text(std::size_t series, std::size_t point, Component component);

}  // namespace Module_display_data
