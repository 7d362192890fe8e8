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

#include "core/trap_errors.h"
#include "formats/occam/shift_file.h"
#include "numerics/occam_inversion/inversion.h"
#include "occam/inversion/start_files.h"

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
  /// Decades, the error with which each site's shift is drawn to 0. Without it an iteration that was found
  /// with shifts goes on with them as they were looked for.
  std::optional<double> static_shift;
  std::size_t threads = 0;  // 0: as many as the machine has cores
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
  StaticsFile static_shifts;      // that were looked for, of the last model
  std::string static_shift_file;  // that they stand in; empty if none were looked for
  std::string earlier_folder;     // in the directory, where an earlier inversion has moved; empty if none has
};

/// How far the iteration under way is. An iteration takes the sensitivities of the last model, then trials,
/// each with the response of a model.
struct InversionProgress {
  int iteration = 0;      // under way; that of the start while its response is computed
  int trial = 0;          // under way, from 1; 0: the sensitivities, or the response of the start
  double share = 0.0;     // of that trial's response, or of the sensitivities, that is done: 0 to 1
  bool of_start = false;  // the response of the start, before the first iteration
};

/// What is told while the inversion works, from the calling thread; either may be empty.
struct InversionListener {
  std::function<void(const InversionStep&)> step;          // its files are in place
  std::function<bool(const InversionProgress&)> progress;  // several times a second; false stops
};

/// Iterations of an earlier inversion are in the way; the text is a sentence.
class EarlierIterations : public std::runtime_error, public CompleteMessage {
 public:
  using std::runtime_error::runtime_error;
};

/// Whether an inversion works in a directory, of this program or another.
bool is_being_inverted(const std::filesystem::path& directory);

/// Inverts a run directory, which is locked meanwhile. Throws std::exception with a sentence for what can't
/// be inverted, and then nothing was written; EarlierIterations where these would have to move;
/// std::runtime_error where a file can't be written, and then the directory holds the iterations that ended.
InversionReport run_inversion(const std::filesystem::path& directory, const InversionOptions& options,
                              const InversionListener& listener);

}  // namespace Module_occam
