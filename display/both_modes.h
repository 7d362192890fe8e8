// both_modes.h: the curves of the other mode, shown beside those of the data type that is selected.
//
// What is selected stays in charge: commands and edits act on it. A click on a curve of the other mode
// selects that mode first. In a plot the series of the other mode come behind those that are selected.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/graph/plot_table.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

/// "EyHx" for "ExHy", "EyHy" for "ExHx", and back; empty for a type that has no counterpart.
std::string other_mode_of(std::string_view data_type);

enum class Modes { selected, both };  // what a plot shows

struct OtherMode {
  Module_averaged_data::StationDataSet station;
  Module_averaged_data::RepeatDataSet repeats;
  std::vector<Module_averaged_data::UnsupportedCurve> unsupported;  // of the station
};

/// What was loaded last; empty while one mode is shown, and where the survey has nothing of the other.
const OtherMode& other_mode();

/// Whether load_other_mode loads anything; at first it doesn't.
void ask_for_both_modes(bool asked);

/// Loads the other mode of the station and scan rate that are shown, if it was asked for.
/// @return 0, or -1 after a message; what was loaded by then is shown
[[nodiscard]] int load_other_mode();

/// The slot behind a series of the station graph; null beyond the last one.
const Module_averaged_data::StationSlot* shown_station_slot(std::size_t series);
/// The slot behind a series of the raw graph; null beyond the last one.
const Module_averaged_data::RepeatSlot* shown_repeat_slot(std::size_t series);

/// Whether a curve of either mode is one that rests on nothing in use; scan rate in Hz, 0 for the merged
/// curve.
[[nodiscard]] bool is_unsupported_curve(std::string_view data_type, double station, float scan_rate);

/// One colour for each current direction, whichever is selected: who goes from one to the other sees the same
/// curves.
graph::Colour mode_colour(std::string_view data_type);
/// The same, lighter: for what the curve that counts was made from.
graph::Colour pale_mode_colour(std::string_view data_type);

}  // namespace Module_display_data
