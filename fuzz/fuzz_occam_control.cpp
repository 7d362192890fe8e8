// Any text as the start file of a two-dimensional inversion.
#include <stdexcept>

#include "formats/occam/iteration_file.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    (void)Module_occam::read_control_file(write_input_file(data, size, "startup"));
  } catch (const std::runtime_error&) {  // a text that isn't a start file
  }
  return 0;
}
