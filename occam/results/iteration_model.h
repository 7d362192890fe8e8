// iteration_model.h: the parameters of an iteration as the model takes them.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "formats/occam/iteration_file.h"
#include "formats/occam/occam_model.h"
#include "formats/occam/shift_file.h"

namespace Module_occam {

struct IterationModel {
  std::vector<double> parameters;         // log10 ohm-m, of the free blocks
  std::vector<double> free_shifts;        // decades, of the free static shifts in the order of their file
  std::vector<StaticShift> found_shifts;  // beside those of the model, as they stand beside the iteration
  int debug_level = 1;  // 0: the inversion leaves resistivities beyond its limits as they are
};

/// Why an iteration can't be of a model: it has another number of parameters. Empty if it has the right one.
/// @param name             of the iteration's file
/// @param parameter_count  of the iteration
std::string parameter_mismatch(const OccamModel& model, const std::string& name, int parameter_count);

/// The parameters of an iteration without mismatch.
IterationModel iteration_model(const OccamModel& model, const OccamIteration& iteration);

/// The static shifts that an inversion has found with an iteration and left beside its file, but for those
/// that the model's statics file has; their error is the one with which they were drawn to 0. Empty without
/// any. Throws as read_shift_file.
StaticsFile found_shifts(const std::filesystem::path& folder, int iteration, const OccamModel& model);

/// Reads an iteration of a run with the static shifts beside it. Shows nothing. Throws std::exception for
/// files that can't be read, or are of another model.
IterationModel read_iteration_model(const std::filesystem::path& folder, const std::string& name,
                                    const OccamModel& model);

/// The model's static shifts with the free ones as an iteration has them, and those found with it.
std::vector<StaticShift> static_shifts(const OccamModel& model, const IterationModel& iteration);

}  // namespace Module_occam
