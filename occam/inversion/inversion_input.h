// inversion_input.h: what the files of a run directory give an inversion to begin with.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "formats/occam/model_extras.h"
#include "formats/occam/model_file.h"
#include "formats/occam/occam_model.h"
#include "formats/occam/start_file.h"
#include "numerics/occam_inversion/roughness.h"
#include "occam/inversion/run_problem.h"

namespace Module_occam {

struct InversionInput {
  InversionStart start;
  ObservedData data;
  OccamModel model;
  ModelNames model_names;
  ModelExtras extras;
};

/// Reads a start or iteration file of a directory and the files that it names. Throws std::runtime_error with
/// the file's name and what is wrong with it.
/// @param remedy  ends what is said of the start file
InversionInput read_inversion_input(const std::filesystem::path& directory, const std::string& start_file,
                                    const std::string& remedy = {});

/// A file that a run names, other than its start.
struct NamedFile {
  const char* what = "";  // "data file"
  std::string name;       // within the directory of the run
};
std::vector<NamedFile> named_files(const std::filesystem::path& directory, const InversionInput& input);

/// The static shifts of the run's data that were found with an iteration, with the error with which they were
/// drawn to 0: iteration files don't list them, and an inversion goes on with them. None with a start file.
/// Throws std::exception for a file of shifts that can't be read.
StaticsFile earlier_shifts(const std::filesystem::path& directory, const std::string& start_file,
                           const InversionInput& input);

/// How a run is inverted that goes on with earlier shifts.
RunRules rules_of(const InversionInput& input, const StaticsFile& earlier, std::size_t threads);

/// The roughness that the files ask for. Throws std::exception for what can't be followed.
numerics::occam_inversion::Roughness roughness_of(const InversionInput& input, const RunProblem& run);

}  // namespace Module_occam
