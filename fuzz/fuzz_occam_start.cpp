// Any text as the start of a two-dimensional inversion: what has been read and written is read again alike.
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "formats/occam/start_file.h"
#include "fuzz/input_file.h"

using namespace Module_occam;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

bool is_alike(double value, double again) {
  constexpr double rounding = 1e-6;
  return value == again || std::abs(value - again) <= rounding * std::abs(value);
}

void check_written(const InversionStart& start) {
  const std::string text = iteration_file_text(start);
  const InversionStart again = read_start_file(
      write_input_file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), "ITER01.iter"));
  require(again.model_file == start.model_file && again.data_file == start.data_file);
  require(again.iteration == start.iteration && again.iterations_to_run == start.iterations_to_run);
  require(again.roughness_type == start.roughness_type && again.target_reached == start.target_reached);
  require(again.model_limits.has_value() == start.model_limits.has_value());
  require(is_alike(start.log10_multiplier, again.log10_multiplier));
  require(again.parameters.size() == start.parameters.size());
  for (std::size_t i = 0; i < start.parameters.size(); ++i) {
    require(is_alike(start.parameters[i], again.parameters[i]));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InversionStart start;
  try {
    start = read_start_file(write_input_file(data, size, "startup"));
  } catch (const std::runtime_error&) {  // a text that isn't a start file
    return 0;
  }
  check_written(start);
  return 0;
}
