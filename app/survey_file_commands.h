// survey_file_commands.h: what the File menu does with survey files.
//
// The window calls these and then shows the session's state; none of them knows a window. Failures are
// reported here or by the operation that met them, once each. A file that is to be replaced goes only when
// the new one is in place.
#pragma once
#include <string>

namespace Module_Brenlox {

/// The main window's title: the open survey's path, if there is one, and whether it is read-only.
std::string window_caption();

/// The state without a survey: recent files, header values, station counts, undo. Writes the preferences.
void reset_session();

/// Closes what is open and resets the session.
/// @return false after a message: the survey is still open
[[nodiscard]] bool close_survey();

// Each returns true if another survey is open then. A survey that is open stays so until the other one is: a
// dialog that is cancelled, a file that has gone or can't be opened leaves it as it was.

/// Asks for a survey and opens it.
[[nodiscard]] bool open_chosen_survey();
/// Asks for a new file's name, again if a file that is there may not be replaced, creates an empty survey
/// there and opens it.
[[nodiscard]] bool create_chosen_survey();
/// The same with a name that is proposed, as "sample.mdb", in the working folder.
[[nodiscard]] bool create_proposed_survey(const std::string& name);
/// The same for the survey of a folder of field files: FOLDER.mdb beside the folder is proposed.
[[nodiscard]] bool create_survey_of_folder(const std::string& folder);
/// Opens the survey at `path`, or says that there is none.
[[nodiscard]] bool open_survey_file(const std::string& path);

/// Asks for a new file's name, copies the open survey there and goes on with the copy. The copy is of what is
/// open, also where its file was removed or can't be written.
/// @return false if nothing has changed: cancelled, refused, or not copied
[[nodiscard]] bool save_survey_as();

}  // namespace Module_Brenlox
