#include "core/debug_log.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <ios>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/user_interface.h"

namespace Module_debug {

namespace {

std::int64_t line_number = 0;

std::string present_time() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::array<char, 32> text{};
  const std::size_t length =
      std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", std::localtime(&now));
  return {text.data(), length};
}

void write_line(const std::string& line, std::ios::openmode mode) {
  std::ofstream file(debug_log_file(), std::ios::binary | mode);
  file << line << '\n';
}

}  // namespace

std::string debug_log_file() {
  const std::string& directory = session().environment.application_data_directory;
  const std::filesystem::path folder =
      directory.empty() ? std::filesystem::temp_directory_path() : std::filesystem::path(directory);
  return (folder / "Brenlox_debug.log").string();
}

void write_debug(int code, std::string_view text) {
  if (session().debug_level <= 0) {
    return;
  }
  try {
    if (code == start_log) {
      line_number = 0;
      write_line("Debug for Brenlox started at : " + present_time(), std::ios::trunc);
      return;
    }
    const std::string line = format_number(++line_number, "0") + " : " + std::string(text);
    write_line(line, std::ios::app);
    if (session().debug_level > 1) {
      user_interface().show_message(line);
    }
  } catch (const std::exception&) {  // the trace must not disturb what it traces
  }
}

}  // namespace Module_debug
