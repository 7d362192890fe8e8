// private_folder.h: a folder for files that only this process works on.
#pragma once
#include <filesystem>
#include <memory>

#include "platform/files/file_lock.h"

/// A new folder in the system's place for temporary files, which no other user can enter. It goes at the end
/// of its holder's life, with all that is in it; one that a killed process has left goes when the next is
/// made.
class PrivateFolder {
 public:
  /// Throws std::runtime_error with the system's description.
  PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;
  ~PrivateFolder();

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  std::unique_ptr<FileLock> in_use_;
};
