// Any texts as the model of a two-dimensional inversion, read for the exceptions of its roughness, and, after
// a line "====", as its prejudice file, which the model names "prejudice".
#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "formats/occam/model_extras.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::string_view divider = "\n====\n";
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t model_size = std::min(text.find(divider), size);
  (void)write_input_file(data, model_size, "inmodel");
  std::ofstream(input_folder() + "/prejudice", std::ios::binary)
      << text.substr(std::min(model_size + divider.size(), size));
  try {
    (void)Module_occam::read_model_extras(input_folder(), "inmodel");
  } catch (const std::runtime_error&) {  // texts that aren't a model
  }
  return 0;
}
