// model_file.h: the model file of an inversion: which cells of the mesh make a block.
#pragma once
#include <string>
#include <vector>

#include "formats/occam/occam_model.h"

namespace Module_occam {

/// A layer as the model file holds it.
struct LayerLines {
  int rows = 0;
  std::vector<int> block_columns;
};

/// The text of a model file on the mesh "MESH", lines ending in CR LF.
std::string model_file_text(const std::string& model_name, double binding_offset,
                            const std::vector<LayerLines>& layers);

/// Reads a model file and its mesh into occam_state().model and places the sites of occam_state().data, which
/// must have been read before. Two sites on one node give a message, but are no failure.
/// @return 0; -1 after a message, or without one where the model file has an empty line among its heads
[[nodiscard]] int read_occam_model(const std::string& path);

}  // namespace Module_occam
