// files_in_use.h: files that are being read, so that no output takes their place.
#pragma once
#include <filesystem>
#include <memory>
#include <vector>

namespace safe_files {

/// While one of its copies lives, writing into place (safe_files.h) refuses these files, by whatever name or
/// link they are reached. A file that is missing for now counts once it is there.
class FilesInUse {
 public:
  FilesInUse() = default;
  explicit FilesInUse(std::vector<std::filesystem::path> files);

 private:
  std::shared_ptr<const std::vector<std::filesystem::path>> files_;
};

/// Throws std::runtime_error if a file to be written is one that is being read.
void refuse_input(const std::filesystem::path& destination);

}  // namespace safe_files
