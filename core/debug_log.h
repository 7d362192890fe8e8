// debug_log.h: a trace for finding a fault on a user's machine. Silent unless debug_level is raised.
#pragma once
#include <string>
#include <string_view>

namespace Module_debug {

inline constexpr int start_log = -1;

/// Writes a line of the log and closes it again, so that the log survives a crash. Does nothing unless
/// session().debug_level is above 0; above 1 the line is shown as a message too. Not being able to write the
/// log is not an error.
/// @param code  start_log starts a new log with a line of its own; any other appends `text`
void write_debug(int code, std::string_view text);

/// "Brenlox_debug.log" in the application data directory, in the temporary one while that isn't known.
std::string debug_log_file();

}  // namespace Module_debug
