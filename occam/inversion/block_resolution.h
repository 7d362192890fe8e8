// block_resolution.h: what the data of a run say of each block of an iteration's model.
#pragma once
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Module_occam {

/// Of each free block, in the order of the parameters.
struct BlockResolution {
  std::vector<double> visibility;       // 0: the data don't see it, to 1: they do
  std::vector<double> sensitivity;      // all data's, over their errors, by the block's area; 1/m
  std::vector<double> standard_errors;  // decades of resistivity, about: of the linearised problem
};

/// Linearises the response at the model of an iteration file, and takes the multiplier that the file names.
/// @param threads   0: as many as the machine has cores
/// @param progress  may be empty; the share done, 0 to 1; false stops
/// @return none if stopped. Throws std::exception with a sentence for files that can't be read and for what
///         can't be inverted
std::optional<BlockResolution> block_resolution(const std::filesystem::path& directory,
                                                const std::string& iteration_file, std::size_t threads,
                                                const std::function<bool(double)>& progress);

}  // namespace Module_occam
