// zonge.h: merged curves of one line as a Zonge AVG data set: ".avg", ".mde" and ".stn" files with a common
// root.
#pragma once
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "core/calendar.h"
#include "database/reading.h"

namespace Module_output {

/// The row count after a stop.
inline constexpr int nothing_written = -1;

/// Writes the three files of a line, with the stations that have a reading of the selection; merged curves
/// are computed where there are none yet. Their names come from `avg_path` (zonge_paths). All
/// three are written beside their places first, so that a failure leaves earlier files whole. Frequencies
/// that are switched off for the reference type, and points with resistivity or phase masked, are left out.
/// The user can stop it between stations; nothing is written then.
/// @param show_row_count gets the running number of data rows after each station; may be empty
/// @param row_count rows written to the ".avg" file, or nothing_written
/// @param date for the head of the ".avg" file
/// @return 0, or -1 after a message ("There is no data for the specified line and data type", or the failure)
[[nodiscard]] int output_zonge(const Module_database::LineSelection& selection, const std::string& avg_path,
                               const std::function<void(int)>& show_row_count, int& row_count,
                               std::chrono::year_month_day date = today());

}  // namespace Module_output
