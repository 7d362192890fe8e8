#include "platform/files/file_mark.h"

#ifdef __linux__
#include <array>

#include <sys/stat.h>
#include <sys/xattr.h>
#endif

#ifdef __linux__

namespace {

constexpr const char* attribute = "user.brenlox.mark";

}  // namespace

std::string file_state(const std::filesystem::path& file) {
  struct stat state {};
  if (::stat(file.c_str(), &state) != 0) {
    return {};
  }
  return std::to_string(state.st_size) + " " + std::to_string(state.st_mtim.tv_sec) + "." +
         std::to_string(state.st_mtim.tv_nsec) + " " + std::to_string(state.st_ino);
}

void set_file_mark(const std::filesystem::path& file, const std::string& text) {
  static_cast<void>(::setxattr(file.c_str(), attribute, text.data(), text.size(), 0));
}

std::string file_mark(const std::filesystem::path& file) {
  std::array<char, 512> text{};
  const ssize_t size = ::getxattr(file.c_str(), attribute, text.data(), text.size());
  return size > 0 ? std::string(text.data(), static_cast<std::size_t>(size)) : std::string();
}

#else

std::string file_state(const std::filesystem::path& /*file*/) { return {}; }
void set_file_mark(const std::filesystem::path& /*file*/, const std::string& /*text*/) {}
std::string file_mark(const std::filesystem::path& /*file*/) { return {}; }

#endif
