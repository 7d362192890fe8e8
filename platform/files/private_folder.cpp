#include "platform/files/private_folder.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#ifdef _WIN32
#include <random>
#else
#include <cerrno>
#include <cstdlib>
#endif

namespace fs = std::filesystem;

namespace {

constexpr std::string_view beginning_of_name = "brenlox_";
constexpr std::string_view lock_name = ".in_use";

fs::path make_folder() {
#ifdef _WIN32
  fs::path path =
      fs::temp_directory_path() / (std::string(beginning_of_name) + std::to_string(std::random_device()()));
  if (!fs::create_directory(path)) {
    throw std::runtime_error(path.string() + ": the folder exists already");
  }
  return path;
#else
  std::string name = (fs::temp_directory_path() / (std::string(beginning_of_name) + "XXXXXX")).string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error(name + ": " + std::generic_category().message(errno));
  }
  return name;
#endif
}

void remove_if_abandoned(const fs::path& folder) {
  std::error_code ignored;
  try {
    const FileLock in_use(folder / lock_name);
    if (in_use.state() == FileLock::State::held) {
      fs::remove_all(folder, ignored);
    }
  } catch (const std::runtime_error&) {  // NOLINT(bugprone-empty-catch) it has gone meanwhile
  }
}

void remove_abandoned_folders() {
  std::error_code unreadable;
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::temp_directory_path(), unreadable)) {
    if (entry.path().filename().string().starts_with(beginning_of_name) &&
        fs::exists(entry.path() / lock_name, unreadable)) {
      remove_if_abandoned(entry.path());
    }
  }
}

}  // namespace

PrivateFolder::PrivateFolder() {
  remove_abandoned_folders();
  // Until the lock is held, another process may take the folder for an abandoned one.
  while (!in_use_ || in_use_->state() == FileLock::State::held_elsewhere) {
    path_ = make_folder();
    try {
      in_use_ = std::make_unique<FileLock>(path_ / lock_name);
    } catch (const std::runtime_error&) {
      std::error_code unreadable;
      if (fs::exists(path_, unreadable)) {
        fs::remove(path_, unreadable);
        throw;
      }
    }
  }
}

PrivateFolder::~PrivateFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}
