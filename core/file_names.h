// file_names.h: taking paths apart, asking for an output file, finding field files in a folder tree.
//
// Both "\" and "/" separate folders: surveys keep paths that were written on another system.
#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace Module_util {

/// The text before the last ".", trimmed; the whole trimmed text if there is none. For names without a
/// folder; of a path use strip_extension.
std::string file_stem(std::string_view name);

/// The text after the last "." of the file's name, without the point; empty if there is none.
std::string file_extension(std::string_view name);

/// The text after the last separator, without blanks and NUL characters at its ends.
std::string file_name_only(std::string_view path);

/// All text up to and including the last separator; empty if there is none.
std::string directory_of(std::string_view path);

/// The path less its extension and the point before it. A point in a folder's name doesn't count.
std::string strip_extension(std::string_view path);

/// Asks for the file to write to, starting from the folder and the name of `name`, in which every ":" becomes
/// "_" (a folder's drive letter keeps its own).
/// @param name  in: suggested path; out: the chosen path, empty when cancelled or when the user doesn't
///              want to overwrite an existing file
/// @return 0 once the dialog has returned, -1 if it could not be shown
[[nodiscard]] int select_output_file(std::string& name, const std::string& title, const std::string& filter);

/// The files of a folder tree whose names match, each folder's own files before those of its subfolders, in
/// the order of the file system. Lets events run between folders and stops when the user asks for it. A
/// folder that can't be read is skipped; one that is reached twice by links is searched once.
/// @param pattern    "*" and "?" stand for any text and any character, letters match in any case; a pattern
///                   without a point is an extension; empty and "*.*" match every file
/// @param directory  empty is the root folder
std::vector<std::string> scan_directory(std::string_view pattern, std::string_view directory);

/// a - b the short way round, for phases in milliradians from -3141.6 to 3141.6. For comparing two stored
/// phases; no procedure here does so yet.
///
/// Only phases of different sign of which one reaches a quarter turn can lie on both sides of the cut.
float phase_difference(float a, float b);

}  // namespace Module_util
