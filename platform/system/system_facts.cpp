#include "platform/system/system_facts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <locale>
#include <string>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

#include "core/number_text.h"
#include "core/session_state.h"
#include "platform/system/fault_handler.h"

namespace fs = std::filesystem;

namespace {

std::string environment_text(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

char decimal_point_of_user() {
  try {
    return std::use_facet<std::numpunct<char>>(std::locale("")).decimal_point();
  } catch (const std::exception&) {
    return '.';  // the user's locale isn't installed
  }
}

#ifdef _WIN32

void collect(UTIL::SystemFacts& facts) {
  std::array<char, MAX_PATH> path{};
  DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
  if (GetComputerNameA(path.data(), &length) != 0) {
    facts.computer_name.assign(path.data(), length);
  }
  facts.user_name = environment_text("USERNAME");
  facts.windows_directory.assign(path.data(), GetWindowsDirectoryA(path.data(), MAX_PATH));
  facts.system_directory.assign(path.data(), GetSystemDirectoryA(path.data(), MAX_PATH));
  facts.local_application_data = environment_text("LOCALAPPDATA");
  facts.program_directory =
      fs::path(std::string(path.data(), GetModuleFileNameA(nullptr, path.data(), MAX_PATH)))
          .parent_path()
          .string();
}

#else

/// A directory of the user's: what the variable says if it is absolute, else the usual place below home.
std::string user_directory(const char* variable, const std::string& home, const char* usual) {
  std::string given = environment_text(variable);
  if (!given.empty() && given.front() == '/') {
    return given;
  }
  return home.empty() ? std::string() : home + "/" + usual;
}

void collect(UTIL::SystemFacts& facts) {
  constexpr std::size_t name_buffer = 256;  // bytes; longer names are cut
  std::string home = environment_text("HOME");
  if (const passwd* const user = getpwuid(geteuid()); user != nullptr) {
    facts.user_name = user->pw_name;
    home = home.empty() ? user->pw_dir : home;
  }
  std::array<char, name_buffer> host{};
  if (gethostname(host.data(), host.size() - 1) == 0) {
    facts.computer_name = host.data();
  }
  const std::string configuration = user_directory("XDG_CONFIG_HOME", home, ".config");
  facts.windows_directory = configuration.empty() ? configuration : configuration + "/brenlox";
  facts.system_directory = "/usr/lib";
  facts.local_application_data = user_directory("XDG_DATA_HOME", home, ".local/share");
  std::error_code unknown;
  facts.program_directory = fs::read_symlink("/proc/self/exe", unknown).parent_path().string();
}

#endif

}  // namespace

UTIL::SystemFacts collect_system_facts() {
  UTIL::SystemFacts facts;
  collect(facts);
  std::error_code unknown;
  facts.temporary_directory = fs::temp_directory_path(unknown).string();
  facts.decimal_point = decimal_point_of_user();
  return facts;
}

std::int32_t wanted_debug_level() {
  constexpr double highest = 2.0;  // a message for each line
  const double level = numeric_value(environment_text("BRENLOX_DEBUG_LEVEL"));
  return static_cast<std::int32_t>(std::clamp(level, 0.0, highest));
}

void initialise_from_system(const UTIL::DisplayFacts& display) {
  install_fault_handler();
  session().debug_level = std::max(session().debug_level, wanted_debug_level());
  UTIL::initialise_environment(collect_system_facts(), display);
}
