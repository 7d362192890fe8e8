#include "platform/system/find_file_in_path.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

#ifdef _WIN32
constexpr char path_separator = ';';
#else
constexpr char path_separator = ':';
#endif

}  // namespace

std::string find_file_in_path(std::string_view file_name, std::string_view search_path) {
  if (file_name.empty()) {
    return {};
  }
  while (true) {
    const std::size_t end = search_path.find(path_separator);
    const std::filesystem::path candidate = std::filesystem::path(search_path.substr(0, end)) / file_name;
    std::error_code ignored;
    if (std::filesystem::is_regular_file(candidate, ignored)) {
      return std::filesystem::absolute(candidate, ignored).string();
    }
    if (end == std::string_view::npos) {
      return {};
    }
    search_path.remove_prefix(end + 1);
  }
}

std::string find_file_in_path(std::string_view file_name) {
  const char* const path = std::getenv("PATH");
  return path == nullptr ? std::string() : find_file_in_path(file_name, path);
}
