// Any texts as the model and the mesh of a two-dimensional inversion: the mesh comes after a line "====".
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "formats/occam/model_file.h"
#include "fuzz/input_file.h"

namespace {

constexpr std::string_view divider = "\n====\n";

/// Every block lies inside the mesh, and each free parameter belongs to a block.
bool is_whole(const Module_occam::OccamModel& model) {
  int parameters = 0;
  for (const Module_occam::OccamBlock& block : model.blocks) {
    parameters += block.parameter_number > 0 ? 1 : 0;
    if (block.block_extent.end_row >= static_cast<int>(model.node_z.size()) ||
        block.block_extent.end_column >= static_cast<int>(model.node_x.size())) {
      return false;
    }
  }
  return parameters == model.num_free_params && model.site_node.size() == 3;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Module_occam;
  OccamData sites;
  sites.site_offsets = {0.0F, 100.0F, 1e6F};
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t model_size = std::min(text.find(divider), size);
  (void)write_input_file(data, model_size, "inmodel");
  const std::string_view mesh = text.substr(std::min(model_size + divider.size(), size));
  std::ofstream(input_folder() + "/MESH", std::ios::binary) << mesh;
  try {
    if (!is_whole(read_model_file(input_folder(), "inmodel", sites))) {
      std::abort();
    }
  } catch (const std::runtime_error&) {  // texts that aren't a model
  }
  return 0;
}
