// read_only_folder.h: a folder that the calling process can read, but not write, also where it runs as root.
#pragma once
#include <filesystem>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

class ReadOnlyFolder {
 public:
  explicit ReadOnlyFolder(const std::filesystem::path& folder) : folder_(folder) {
    constexpr mode_t others_read = 0555;
    constexpr uid_t nobody = 65534;
    if (::chmod(folder_.c_str(), others_read) != 0 || (::geteuid() == 0 && ::seteuid(nobody) != 0)) {
      throw std::runtime_error("the folder can't be made read-only");
    }
  }
  ReadOnlyFolder(const ReadOnlyFolder&) = delete;
  ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;
  ~ReadOnlyFolder() {
    constexpr mode_t owner_writes = 0755;
    if (::seteuid(::getuid()) == 0) {
      ::chmod(folder_.c_str(), owner_writes);
    }
  }

 private:
  std::filesystem::path folder_;
};
