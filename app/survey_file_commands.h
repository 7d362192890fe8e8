// survey_file_commands.h: what the File menu does with survey files.
//
// The window calls these and then shows the session's state; none of them knows a window. Failures are
// reported here or by the operation that met them, once each. A file that is to be replaced goes only when
// the new one is in place.
#pragma once
#include <string>

namespace Module_Brenlox {

/// The main window's title: the open survey's path, if there is one.
std::string window_caption();

/// The state without a survey: recent files, header values, station counts, undo. Writes the preferences.
void reset_session();

/// Closes what is open and resets the session.
/// @return false after a message: the survey is still open
[[nodiscard]] bool close_survey();

// With no survey open; each returns true if one is open then. A dialog that is cancelled leaves none open.

/// Asks for a survey and opens it.
[[nodiscard]] bool open_chosen_survey();
/// Asks for a new file's name, creates an empty survey there and opens it.
[[nodiscard]] bool create_chosen_survey();
/// Opens the survey at `path`, or says that there is none.
[[nodiscard]] bool open_survey_file(const std::string& path);

/// Asks for a new file's name, copies the open survey there and goes on with the copy; if it can't be copied,
/// with the survey that was open.
/// @return false if nothing has changed: cancelled or refused
[[nodiscard]] bool save_survey_as();

}  // namespace Module_Brenlox
