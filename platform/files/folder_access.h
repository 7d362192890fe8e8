// folder_access.h: whether a folder takes new files.
#pragma once
#include <filesystem>

/// True if files can be made in a folder or, where it is missing, if it can be made itself. A disk without
/// room shows only when the file is written.
bool can_write_into(const std::filesystem::path& folder);
