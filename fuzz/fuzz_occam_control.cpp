// Any text as the start file of a two-dimensional inversion.
#include "formats/occam/iteration_file.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Module_occam::ControlFile names;
  (void)Module_occam::read_occam_control_file(write_input_file(data, size, "startup"), names);
  return 0;
}
