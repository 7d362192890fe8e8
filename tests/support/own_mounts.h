// own_mounts.h: small disks and folders that can't be written, for the calling process alone.
//
// The process leaves the mounts of the others behind for good, so this is called in a forked child. It works
// for root, and for others where the system lets a user have a namespace of its own.
#pragma once
#include <cstddef>
#include <filesystem>

namespace own_mounts {

/// Must be called first, before the process has a second thread. @return false if the system doesn't allow it
[[nodiscard]] bool enter();

// These throw std::system_error.

/// Puts an empty disk of so many bytes in the place of a folder.
void put_disk(const std::filesystem::path& folder, std::size_t bytes);

void make_read_only(const std::filesystem::path& folder);

/// Makes everything read-only but this folder.
void leave_writable_only(const std::filesystem::path& folder);

}  // namespace own_mounts
