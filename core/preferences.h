// preferences.h: the preferences file Brenlox.prf, a text of "key : value" lines.
//
// The recent files, the opening picture and the window's size are in the session. The file's display scales
// are read and written back as they were; nothing else uses them.
#pragma once
#include <string>

namespace Module_Brenlox {

/// Sets every preference to its default, finds the file and reads it. It is looked for in the working
/// directory, the program's own and the per-user configuration directory, in this order; if there is none, a
/// new one is written to the working directory, or to the configuration directory if that can't be written
/// to. A file without the right first line is reported to the user and leaves the defaults.
///
/// session().recent_count stays 0 until refresh_recent_file_menu.
void read_preferences();

/// Replaces the file by one with every key. Does nothing before read_preferences, so that a file that was
/// never read isn't overwritten by defaults; a failure leaves the earlier file whole.
void write_preferences();

/// The path of the opening picture, wherever the process works by now; empty if there is none. In the file it
/// may stand relative to the working directory at start.
std::string opening_picture_file();

/// Counts the recent files up to the first blank one, drops those after it and writes the preferences.
void refresh_recent_file_menu();

/// Puts a file at the head of the recent files; one that is known, in any case, moves up. The sixth falls
/// out. Nothing is written.
void add_recent_file(const std::string& path);

}  // namespace Module_Brenlox
