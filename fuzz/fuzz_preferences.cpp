// Any text as Brenlox.prf: the program starts with what can be read of it, and what it writes back reads the
// same again.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "core/preferences.h"
#include "core/session_state.h"
#include "fuzz/input_file.h"

namespace {

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string read_and_write(const std::string& path) {
  reset_session_state();
  Module_Brenlox::read_preferences();
  Module_Brenlox::write_preferences();
  return contents(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = write_input_file(data, size, "Brenlox.prf");
  std::filesystem::current_path(input_folder());  // where the preferences are looked for first
  const std::string once = read_and_write(path);
  if (read_and_write(path) != once) std::abort();
  return 0;
}
