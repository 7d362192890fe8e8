// inversion_input.h: what the files of a run directory give an inversion to begin with.
#pragma once
#include <filesystem>
#include <string>

#include "formats/occam/data_file.h"
#include "formats/occam/model_extras.h"
#include "formats/occam/occam_model.h"
#include "formats/occam/start_file.h"
#include "numerics/occam_inversion/roughness.h"
#include "occam/inversion/run_problem.h"

namespace Module_occam {

struct InversionInput {
  InversionStart start;
  ObservedData data;
  OccamModel model;
  ModelExtras extras;
};

/// Reads a start or iteration file of a directory and the files that it names. Throws std::runtime_error with
/// the file's name and what is wrong with it.
/// @param remedy  ends what is said of the start file
InversionInput read_inversion_input(const std::filesystem::path& directory, const std::string& start_file,
                                    const std::string& remedy = {});

/// The roughness that the files ask for. Throws std::exception for what can't be followed.
numerics::occam_inversion::Roughness roughness_of(const InversionInput& input, const RunProblem& run);

}  // namespace Module_occam
