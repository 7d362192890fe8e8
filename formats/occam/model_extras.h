// model_extras.h: what the model file of an inversion says of its roughness beyond the blocks: weights of
// single links, and values that parameters are drawn to.
#pragma once
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace Module_occam {

struct BlockPlace {
  int layer_number = 0;  // from 1
  int block_number = 0;  // in its layer, from 1
};

/// The weight of a link, between two blocks by their places or by the numbers, from 1, of their parameters.
struct LinkException {
  std::variant<int, BlockPlace> first;
  std::variant<int, BlockPlace> second;
  double weight = 1.0;
};

struct PrejudiceValue {
  int parameter_number = 0;  // from 1
  double value = 0.0;        // log10 ohm-m
  double weight = 0.0;
};

struct ModelExtras {
  std::vector<LinkException> exceptions;
  std::vector<PrejudiceValue> prejudices;
};

/// Reads both for a model file in a folder. Throws std::runtime_error with what is wrong, also for a
/// prejudice file that is named and isn't there: the inversion would be another one without it.
ModelExtras read_model_extras(const std::filesystem::path& run_folder, const std::string& name);

}  // namespace Module_occam
