#include "platform/files/folder_access.h"

#include <stdexcept>
#include <system_error>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

bool can_write_into(const fs::path& folder) {
  std::error_code ignored;
  const fs::path place = fs::exists(folder, ignored) ? folder : folder.parent_path();
#ifndef _WIN32
  return ::faccessat(AT_FDCWD, place.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
#else
  return fs::is_directory(place, ignored);
#endif
}

void make_folder(const fs::path& folder) {
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (failure) {
    throw std::runtime_error(folder.string() + ": " + failure.message());
  }
}
