// temporary_folder.h: a folder of its own for a test, gone at its end; and field files beside the checkout.
#pragma once
#include <filesystem>
#include <string>
#include <string_view>

class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] std::string path(std::string_view name) const { return (folder_ / name).string(); }
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
  /// Writes a file and gives its path.
  [[nodiscard]] std::string write(std::string_view name, std::string_view contents) const;

 private:
  std::filesystem::path folder_;
};

/// The whole contents of a file.
std::string file_contents(const std::string& path);
