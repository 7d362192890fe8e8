// environment.h: the facts about machine, user and display that the program learns once at its start.
#pragma once
#include <cstdint>
#include <string>

namespace UTIL {

/// What the operating system knows; collected in platform/system.
struct SystemFacts {
  std::string user_name;
  std::string computer_name;
  std::string windows_directory;  // the per-user configuration directory where there is no Windows
  std::string system_directory;
  std::string temporary_directory;
  std::string program_directory;
  std::string local_application_data;  // per user
  char decimal_point = '.';            // of the user's locale
};

/// What the windows know; zeros in a program without any.
struct DisplayFacts {
  int bits_per_pixel = 0;
  int planes = 0;
  float width_millimetres = 0.0F;
  int width_pixels = 0;
  int logical_pixels_per_inch = 0;
};

/// Fills session().environment and creates the application data directory. Only the first call does anything.
void initialise_environment(const SystemFacts& system, const DisplayFacts& display = {});

/// The name of a fault of the process, "Unknown (&H00000000)" for a code that has none.
/// @param code  an exception code of Windows; platform/system maps the signals of other systems to these
std::string fault_name(std::uint32_t code);

}  // namespace UTIL
