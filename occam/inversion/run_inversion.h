// run_inversion.h: the inversion of a run directory: from a start or iteration file on to iteration files,
// responses and a log, as the public program leaves them.
//
// Every file is put into place whole, those of an iteration together: after a stop or a crash at any moment
// the directory holds finished iterations and can be continued. What an earlier inversion left, and this one
// would replace, moves into a folder of its own first.
#pragma once
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "numerics/occam_inversion/inversion.h"

namespace Module_occam {

struct InversionOptions {
  std::string from;               // start or iteration file, in the directory; empty: see `go_on`
  bool go_on = false;             // from the highest iteration file, else from the start file
  bool may_move_earlier = false;  // iterations of an earlier inversion that would be replaced move away
  std::optional<int> iterations;  // in place of those that the file asks for
  std::optional<double> target_rms;
  std::optional<int> roughness_type;
  numerics::occam_inversion::Search search = numerics::occam_inversion::Search::better;
  bool robust = false;
  std::optional<double> static_shift;  // decades, the error with which each site's shift is drawn to 0
  std::size_t threads = 0;             // 0: as many as the machine has cores
};

/// One line of the course of an inversion.
struct InversionStep {
  int iteration = 0;
  double rms = 0.0;
  double roughness = 0.0;
  double log10_multiplier = 0.0;
  double step = 0.0;  // root mean square of the model's change, decades
  std::size_t trials = 0;
  double seconds = 0.0;
};

struct InversionReport {
  numerics::occam_inversion::Ending ending = numerics::occam_inversion::Ending::stopped;
  std::string reason;  // a sentence
  std::vector<InversionStep> steps;
  double target_rms = 1.0;
};

/// How far the iteration under way is. An iteration takes the sensitivities of the last model, then trials,
/// each with the response of a model.
struct InversionProgress {
  int iteration = 0;   // under way; that of the start while its response is computed
  int trial = 0;       // under way, from 1; 0: the sensitivities
  double share = 0.0;  // of that trial's response, or of the sensitivities, that is done: 0 to 1
};

/// What is told while the inversion works, from the calling thread; either may be empty.
struct InversionListener {
  std::function<void(const InversionStep&)> step;          // its files are in place
  std::function<bool(const InversionProgress&)> progress;  // several times a second; false stops
};

/// Iterations of an earlier inversion are in the way.
class EarlierIterations : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Inverts a run directory. Throws std::exception with a sentence for what can't be inverted, and then
/// nothing was written; EarlierIterations where these would have to move; std::runtime_error where a file
/// can't be written, and then the directory holds the iterations that ended.
InversionReport run_inversion(const std::filesystem::path& directory, const InversionOptions& options,
                              const InversionListener& listener);

/// The start file of a directory: "startup" in any case of letters, else the only file with a start at
/// iteration 0. Throws std::runtime_error if there is none, or are several.
std::string find_start_file(const std::filesystem::path& directory);

/// The iteration file with the highest number; empty if there is none.
std::string last_iteration_file(const std::filesystem::path& directory);

/// The sentence with which an inversion ended.
std::string ending_sentence(numerics::occam_inversion::Ending ending, const InversionStep& last,
                            double target_rms);

}  // namespace Module_occam
