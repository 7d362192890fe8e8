// clone_file.h: copies that share their blocks with the original until one of both is written.
#pragma once
#include <filesystem>

/// Makes `copy` a clone of `original`, whatever `copy` held before. Takes no time and no room, and the
/// original is as it was.
/// @return false where the file system can't, or the files are on two; `copy` is then empty or missing
bool clone_file(const std::filesystem::path& original, const std::filesystem::path& copy);
