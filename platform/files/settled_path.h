// settled_path.h: paths as they are kept and shown.
#pragma once
#include <filesystem>

/// The whole path without "." and "..". Behind a link ".." leads elsewhere than the path's text says, so that
/// a path with it is followed; one that leads nowhere keeps it.
std::filesystem::path settled_path(const std::filesystem::path& given);
