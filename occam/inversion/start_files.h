// start_files.h: from which file of a run directory an inversion starts.
#pragma once
#include <filesystem>
#include <string>

namespace Module_occam {

/// The start file of a directory: "startup" in any case of letters, else the only other file with a start at
/// iteration 0. Throws std::runtime_error if there is none, or are several.
std::string find_start_file(const std::filesystem::path& directory);

/// The iteration file with the highest number; empty if there is none.
std::string last_iteration_file(const std::filesystem::path& directory);

/// The name in a directory of a file of it that is given by its name, or by a path from elsewhere. Throws
/// std::runtime_error for a file outside.
std::string name_within(const std::filesystem::path& directory, const std::string& path);

}  // namespace Module_occam
