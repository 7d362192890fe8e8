#include "platform/files/lock_holder.h"

#ifdef __linux__
#include <array>
#include <fstream>
#include <sstream>
#include <vector>

#include <pwd.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#endif

#ifdef __linux__

namespace {

std::string user_name(uid_t user) {
  std::vector<char> texts(16384);
  struct passwd entry {};
  struct passwd* found = nullptr;
  const bool known = ::getpwuid_r(user, &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr;
  return known ? entry.pw_name : "user " + std::to_string(user);
}

std::string process_text(long process) {
  const std::filesystem::path place = "/proc/" + std::to_string(process);
  std::string program;
  std::getline(std::ifstream(place / "comm") >> std::ws, program);
  struct stat state {};
  if (program.empty() || ::stat(place.c_str(), &state) != 0) {
    return {};  // it has ended meanwhile
  }
  return program + ", process " + std::to_string(process) + " of " + user_name(state.st_uid);
}

/// As the system's list of locks names a file: device and number.
std::string name_in_lock_list(const struct stat& state) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%02x:%02x:%llu", major(state.st_dev),
                                   minor(state.st_dev), static_cast<unsigned long long>(state.st_ino));
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

// The list is read and not asked for a lock of this process's own: closing a file ends all locks that a
// process has on it.
std::string lock_holder(const std::filesystem::path& file) {
  struct stat state {};
  if (::stat(file.c_str(), &state) != 0) {
    return {};
  }
  const std::string wanted = name_in_lock_list(state);
  std::ifstream list("/proc/locks");
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    std::string number;
    std::string kind;
    std::string strength;
    std::string access;
    std::string held;
    long process = 0;
    // One that waits has an arrow in place of the kind, and doesn't fit.
    if (words >> number >> kind >> strength >> access >> process >> held && held == wanted && process > 0 &&
        process != ::getpid()) {
      return process_text(process);
    }
  }
  return {};
}

#else

std::string lock_holder(const std::filesystem::path& /*file*/) { return {}; }

#endif
