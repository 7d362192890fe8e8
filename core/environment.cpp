#include "core/environment.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>

#include "core/debug_log.h"
#include "core/session_state.h"

namespace fs = std::filesystem;

namespace UTIL {

namespace {

constexpr float millimetres_per_inch = 25.4F;

struct FaultName {
  std::uint32_t code;
  std::string_view name;
};

constexpr FaultName fault_names[] = {{0x80000002U, "Data Type Misalignment"},
                                     {0x80000001U, "Guard Page Violation"},
                                     {0x80000003U, "Breakpoint"},
                                     {0xC0000005U, "Access Violation"},
                                     {0x80000004U, "Single Step"},
                                     {0xC0000006U, "In Page Error"},
                                     {0xC000008CU, "Array Bounds Exceeded"},
                                     {0xC000001DU, "Illegal Instruction"},
                                     {0xC0000025U, "Non Continuable Exception"},
                                     {0xC0000026U, "Invalid Disposition"},
                                     {0xC0000008U, "Invalid Handle"},
                                     {0xC000008DU, "Float Denormal Operand"},
                                     {0xC000008EU, "Divide By Zero"},
                                     {0xC000008FU, "Floating Point Inexact Result"},
                                     {0xC0000090U, "Invalid Operation"},
                                     {0xC0000091U, "Float Overflow"},
                                     {0xC0000092U, "Float Stack Check"},
                                     {0xC0000093U, "Float Underflow"},
                                     {0xC0000094U, "Integer Divide By Zero"},
                                     {0xC0000095U, "Integer Overflow"},
                                     {0xC0000096U, "Privileged Instruction"},
                                     {0xC00000FDU, "Stack Overflow"},
                                     {0xC000013AU, "Control-C Exit"}};

/// The smallest power of two that still changes 1 when it is added in single precision.
float measured_single_epsilon() {
  float epsilon = 1.0F;
  volatile float sum = 1.0F + epsilon;  // kept out of wider registers
  while (sum > 1.0F) {
    epsilon /= 2.0F;
    sum = 1.0F + epsilon;
  }
  return 2.0F * epsilon;
}

void log_step(std::string_view what, std::string_view value = {}) {
  Module_debug::write_debug(0, std::string(what) + std::string(value));
}

void set_system_facts(Environment& environment, const SystemFacts& system) {
  environment.user_name = system.user_name;
  environment.computer_name = system.computer_name;
  environment.windows_directory = system.windows_directory;
  environment.system_directory = system.system_directory;
  environment.temporary_directory = system.temporary_directory;
  environment.program_directory = system.program_directory;
  if (!system.local_application_data.empty()) {
    const fs::path data = fs::path(system.local_application_data) / "Vexapp";
    std::error_code failure;  // whoever writes there reports it
    fs::create_directories(data, failure);
    environment.application_data_directory = data.string();
  }
}

void log_system_facts(const Environment& environment) {
  log_step("Set UnhandledExceptionFilter");
  log_step("create fso");
  log_step("user name: ", environment.user_name);
  log_step("computer name: ", environment.computer_name);
  log_step("WindowsDir: ", environment.windows_directory);
  log_step("WindowsSysDir: ", environment.system_directory);
  log_step("WindowsTempDir: ", environment.temporary_directory);
  log_step("App.Dir: ", environment.program_directory);
}

void set_display_facts(Environment& environment, const DisplayFacts& display) {
  environment.bits_per_pixel = display.bits_per_pixel;
  environment.planes = display.planes;
  environment.width_millimetres = display.width_millimetres;
  environment.width_pixels = display.width_pixels;
  environment.logical_pixels_per_inch = display.logical_pixels_per_inch;
  if (display.width_millimetres > 0.0F) {
    environment.dots_per_inch =
        static_cast<float>(display.width_pixels) / (display.width_millimetres / millimetres_per_inch);
  }
}

void set_characters(Environment& environment, char decimal_point) {
  constexpr int both_points = '.' + ',';
  environment.escape.assign(1, '\x1B');
  environment.white_space = environment.escape + std::string(" \t");
  environment.delimiters = environment.white_space + ",;'";
  environment.decimal_point = decimal_point;
  environment.thousands_point = static_cast<char>(both_points - decimal_point);
}

}  // namespace

void initialise_environment(const SystemFacts& system, const DisplayFacts& display) {
  Environment& environment = session().environment;
  if (environment.initialised) {
    return;
  }
  environment.initialised = true;
  set_system_facts(environment, system);
  Module_debug::write_debug(Module_debug::start_log, {});
  log_system_facts(environment);
  set_display_facts(environment, display);
  set_characters(environment, system.decimal_point);
  environment.single_epsilon = measured_single_epsilon();
}

std::string fault_name(std::uint32_t code) {
  const auto known = std::ranges::find(fault_names, code, &FaultName::code);
  if (known != std::end(fault_names)) {
    return std::string(known->name);
  }
  constexpr std::string_view hexadecimal = "0123456789ABCDEF";
  std::string digits(8, '0');
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, code >>= 4U) {
    *digit = hexadecimal[code & 0xFU];
  }
  return "Unknown (&H" + digits + ")";
}

}  // namespace UTIL
