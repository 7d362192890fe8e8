// folder_access.h: folders that files are to go to.
#pragma once
#include <filesystem>

/// True if files can be made in a folder or, where it is missing, if it can be made itself. A disk without
/// room shows only when the file is written.
bool can_write_into(const std::filesystem::path& folder);

/// Makes a folder and those that it lies in, where they are missing. Throws std::runtime_error with the
/// system's description.
void make_folder(const std::filesystem::path& folder);
