#include "platform/files/private_folder.h"

#include <stdexcept>
#include <string>
#include <system_error>

#ifdef _WIN32
#include <random>
#else
#include <cerrno>
#include <cstdlib>
#endif

namespace fs = std::filesystem;

PrivateFolder::PrivateFolder() {
#ifdef _WIN32
  path_ = fs::temp_directory_path() / ("brenlox_" + std::to_string(std::random_device()()));
  if (!fs::create_directory(path_)) {
    throw std::runtime_error(path_.string() + ": the folder exists already");
  }
#else
  std::string name = (fs::temp_directory_path() / "brenlox_XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error(name + ": " + std::generic_category().message(errno));
  }
  path_ = name;
#endif
}

PrivateFolder::~PrivateFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}
