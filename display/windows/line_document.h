// line_document.h: all graphs of a line as a PDF document.
#pragma once
#include <string>

#include "display/line_axis.h"
#include "reduction/each_item.h"

namespace Module_display_data {

/// Writes the current line: a page with the profile, then a page for each station with its merged curve and
/// averages beside the repeats of each scan rate. Needs a station to be selected; data sets and selection are
/// the same afterwards. Shows progress, and can be stopped between stations;
/// an earlier file is then as before.
/// @param positions  of the stations in the profile; a line without distances has it by station numbers
/// @return failed after a message
[[nodiscard]] Module_averaged_data::Outcome write_line_document(
    const std::string& path, PositionSource positions = PositionSource::station_numbers);

}  // namespace Module_display_data
