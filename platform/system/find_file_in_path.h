// find_file_in_path.h: finding a file in the directories of PATH.
#pragma once
#include <string>
#include <string_view>

/// Looks for a file in the directories of a search path, in order; an empty entry is the working
/// directory.
/// @param search_path directories separated as the system separates them in PATH (";" on Windows, ":"
///                    elsewhere)
/// @return the full path of the first one found, empty if there is none
std::string find_file_in_path(std::string_view file_name, std::string_view search_path);

/// The same in the directories of the environment's PATH.
std::string find_file_in_path(std::string_view file_name);
