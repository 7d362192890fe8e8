// graph_clicks.h: what a click on a point of a graph means.
//
// Series and points are places in the plots, which are places in the data sets. Where a click selects first,
// the second click on the same point turns its mask around. A click on a point of the other mode selects
// that mode, too. Nothing is drawn here.
#pragma once
#include <cstdint>
#include <string>

#include "display/selection.h"
#include "reduction/edits/masks.h"

namespace Module_display_data {

using Module_averaged_data::Component;
using Module_averaged_data::Edit;

/// What the read-outs show after a click, and what has changed.
struct PointClick {
  std::string series_label;              // of the graph; empty on the profile
  std::string file_text;                 // of the reading; empty for a derived one
  std::string event_text;                // of a repeat or average; empty elsewhere
  std::string frequency_text;            // "64.0000"
  std::string status_text;               // frequency for the status bar; on the profile only
  std::string data_type;                 // the click selects this one, of a point of the other mode
  std::int32_t station_to_display = -1;  // the click goes to this station, from 1
  bool draw_raw = false;                 // the click went to another scan rate, whose repeats are loaded
  Edit edit = Edit::nothing;             // changed: all graphs are to be drawn
  bool failed = false;                   // after a message
};

/// A point of the raw graph: its mask is turned around, unless session().updating_controls is set.
[[nodiscard]] PointClick click_raw_point(Component component, std::size_t series, std::size_t point);

/// A point of the station graph.
/// @param shown_frequency what the frequency read-out showed before the click; empty if no point of this
///                        station has been clicked yet, so that the first click selects
[[nodiscard]] PointClick click_station_point(Component component, std::size_t series, std::size_t point,
                                             const std::string& shown_frequency);

/// A point of the profile: frequency `series` at the station of column `point`.
[[nodiscard]] PointClick click_profile_point(Component component, std::size_t series, std::size_t point,
                                             const std::string& shown_frequency);

}  // namespace Module_display_data
