// Any text as an iteration file of a two-dimensional inversion.
#include <cstdlib>
#include <stdexcept>

#include "formats/occam/iteration_file.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Module_occam;
  try {
    const OccamIteration iteration =
        read_iteration_file(IterationParts::with_parameters, write_input_file(data, size, "ITER01.iter"));
    if (iteration.parameters.size() != static_cast<std::size_t>(iteration.parameter_count)) {
      std::abort();
    }
  } catch (const std::runtime_error&) {  // a text that isn't an iteration file
  }
  return 0;
}
