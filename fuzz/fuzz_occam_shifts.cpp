// Any text as the statics file of a two-dimensional inversion.
#include <stdexcept>

#include "formats/occam/shift_file.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    (void)Module_occam::read_shift_file(write_input_file(data, size, "statics"));
  } catch (const std::runtime_error&) {  // a text that isn't a statics file
  }
  return 0;
}
