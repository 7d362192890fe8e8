// Any text as an iteration file of a two-dimensional inversion.
#include <cstdlib>

#include "formats/occam/iteration_file.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Module_occam;
  OccamIteration iteration;
  if (read_occam_iteration(IterationParts::with_parameters, write_input_file(data, size, "ITER01.iter"),
                           iteration) == 0 &&
      iteration.parameters.size() != static_cast<std::size_t>(iteration.parameter_count)) {
    std::abort();
  }
  return 0;
}
