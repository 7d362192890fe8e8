#include "occam/inversion/run_inversion.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "core/number_text.h"
#include "formats/occam/response_file.h"
#include "occam/inversion/earlier_iterations.h"
#include "occam/inversion/ending_sentence.h"
#include "occam/inversion/inversion_files.h"
#include "occam/inversion/inversion_input.h"
#include "occam/inversion/run_problem.h"
#include "occam/results/run_results.h"
#include "platform/files/file_lock.h"
#include "platform/files/input_file.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

class WholeSentence : public std::runtime_error, public CompleteMessage {
 public:
  using std::runtime_error::runtime_error;
};

FileLock lock_of(const fs::path& directory) {
  try {
    return FileLock(directory / inversion_lock_name);
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error("the folder of the run can't be written, " + std::string(failure.what()));
  }
}

// What the log says of the misfit that the iterations below it go by, where outliers have counted linearly.
constexpr std::string_view robust_norm = " ** OUTLIERS COUNT LINEARLY\n\n";
constexpr std::string_view square_norm = " ** OUTLIERS COUNT BY THEIR SQUARES\n\n";

// The log so far, to which each iteration adds; whole at any moment.
class RunLog {
 public:
  explicit RunLog(fs::path file) : file_(std::move(file)) {
    constexpr std::int64_t most_bytes = 100'000'000;
    if (fs::exists(file_)) {
      text_ = read_whole_file(file_.string(), most_bytes);
    }
  }
  [[nodiscard]] bool empty() const { return text_.empty(); }
  /// Whether its last iterations counted outliers linearly; none if it doesn't say it.
  [[nodiscard]] std::optional<bool> is_robust() const {
    const std::size_t robust = text_.rfind(robust_norm);
    const std::size_t squares = text_.rfind(square_norm);
    if (robust == squares) {  // neither is there
      return std::nullopt;
    }
    return robust != std::string::npos && (squares == std::string::npos || squares < robust);
  }
  [[nodiscard]] safe_files::NewFile with(const std::string& more) {
    text_ += more;
    return {file_, text_};
  }

 private:
  fs::path file_;
  std::string text_;
};

// How many iterations in a row, up to the one that is gone on from, were hardly worth it: the decision to end
// goes by them. Files before it that can't be read are no reason not to go on.
// @param robust  the misfit isn't the RMS that the files hold: gains of fit begin anew
int small_gains_before(const fs::path& directory, int iteration, bool robust) {
  const auto files = iteration_files_of(directory);
  const auto level_of = [&](int number) {
    const InversionStart state = read_start_file((directory / files.at(number)).string());
    return inversion::Level{state.rms, state.roughness, state.target_reached};
  };
  const auto is_small = [&](int number) {
    const inversion::Level before = level_of(number - 1);
    return (before.target_reached || !robust) && inversion::is_small_gain(before, level_of(number));
  };
  int count = 0;
  try {
    for (; files.contains(iteration) && files.contains(iteration - 1) && is_small(iteration); --iteration) {
      ++count;
    }
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch)
  }
  return count;
}

class RunningInversion {
 public:
  RunningInversion(fs::path directory, const InversionOptions& options, const InversionListener& listener)
      : directory_(std::move(directory)),
        options_(options),
        listener_(listener),
        lock_(lock_of(directory_)),
        from_(start_name()),
        input_(read_inversion_input(directory_, from_, remedy())),
        start_(with_options()),
        is_iteration_(iteration_number_of(from_) == start_.iteration),
        earlier_shifts_(earlier_shifts(directory_, from_, input_)),
        run_(input_.model, input_.data, rules(), [this](double share) { return tell_progress(share); }),
        roughness_(roughness_of(input_, run_)),
        earlier_(earlier_files()),
        state_(start_state()) {}

  InversionReport run();

 private:
  [[nodiscard]] std::string start_name() const;
  [[nodiscard]] std::string remedy() const;
  const InversionStart& with_options();
  [[nodiscard]] RunRules rules() const;
  [[nodiscard]] EarlierIterationFiles earlier_files() const;
  [[nodiscard]] inversion::State start_state() const;
  [[nodiscard]] inversion::Settings settings() const;
  void begin();
  void take_iteration(const inversion::Iteration& iteration);
  [[nodiscard]] bool tell_progress(double share);
  [[nodiscard]] inversion::Problem counted_problem();
  [[nodiscard]] std::vector<safe_files::NewFile> start_files(const inversion::Iteration& start);
  [[nodiscard]] std::vector<safe_files::NewFile> iteration_files(const inversion::Iteration& iteration) const;
  [[nodiscard]] safe_files::NewFile response_file(const std::string& name,
                                                  const inversion::Iteration& iteration) const;
  void put_into_place(const std::vector<safe_files::NewFile>& files) const;
  void end(const inversion::Outcome& outcome);

  fs::path directory_;
  const InversionOptions& options_;
  const InversionListener& listener_;
  FileLock lock_;
  std::string from_;
  InversionInput input_;
  const InversionStart& start_;  // of the input, with the options
  bool is_iteration_;            // the start is an iteration file, which stays
  StaticsFile earlier_shifts_;   // found with it
  RunProblem run_;
  inversion::Roughness roughness_;
  EarlierIterationFiles earlier_;
  inversion::State state_;
  std::optional<RunLog> log_;
  IterationLog iteration_log_;
  InversionReport report_;
  bool changes_norm_ = false;  // the iterations that it goes on from went by another misfit
  InversionProgress under_way_;
  std::chrono::steady_clock::time_point since_;
};

std::string RunningInversion::start_name() const {
  if (lock_.state() == FileLock::State::held_elsewhere) {
    throw WholeSentence("Another inversion is running in " + directory_.string() + ".");
  }
  if (!options_.from.empty()) {
    return name_within(directory_, options_.from);
  }
  const std::string last = options_.go_on ? last_iteration_file(directory_) : std::string();
  return last.empty() ? find_start_file(directory_) : last;
}

// What to do where the iteration file that was chosen can't be read.
std::string RunningInversion::remedy() const {
  const auto files = iteration_files_of(directory_);
  if (!options_.go_on || files.size() < 2 || files.rbegin()->second != from_) {
    return {};
  }
  return "; move it away to go on from " + std::next(files.rbegin())->second;
}

const InversionStart& RunningInversion::with_options() {
  InversionStart& start = input_.start;
  start.iterations_to_run = options_.iterations.value_or(start.iterations_to_run);
  start.target_rms = options_.target_rms.value_or(start.target_rms);
  start.roughness_type = options_.roughness_type.value_or(start.roughness_type);
  if (!(start.target_rms > 0.0) || !std::isfinite(start.target_rms)) {
    throw std::runtime_error("the target misfit is " + plain_text(start.target_rms));
  }
  if (start.iteration >= max_iteration) {
    throw std::runtime_error(from_ + " is of iteration " + std::to_string(start.iteration) + "; " +
                             std::to_string(max_iteration) + " is the last that can be shown");
  }
  start.iterations_to_run = std::min(start.iterations_to_run, max_iteration - start.iteration);
  constexpr int scan = 2;
  if (std::abs(start.debug_level) == scan && options_.search == inversion::Search::classic) {
    throw std::runtime_error(from_ +
                             " has debug level 2, which scans multipliers; the classic search doesn't");
  }
  return start;
}

RunRules RunningInversion::rules() const {
  RunRules rules = rules_of(input_, earlier_shifts_, options_.threads);
  if (options_.static_shift) {
    rules.static_shift = options_.static_shift;
  }
  return rules;
}

// Files of the run stay in place whatever they are called, but an iteration's file can't go there, too.
EarlierIterationFiles RunningInversion::earlier_files() const {
  const int last_kept = is_iteration_ ? start_.iteration : start_.iteration - 1;
  std::vector<std::string> in_use;
  for (const auto& [what, name] : named_files(directory_, input_)) {
    const std::optional<int> number = iteration_that_writes(name, run_.looks_for_shifts());
    if (number && *number > last_kept) {
      throw std::runtime_error("the " + std::string(what) + " " + name +
                               " would be replaced by that of iteration " + std::to_string(*number) +
                               "; give it another name");
    }
    in_use.push_back(name);
  }
  return {directory_, last_kept, in_use};
}

inversion::State RunningInversion::start_state() const {
  inversion::State state;
  state.iteration = start_.iteration;
  state.model = run_.model_of(start_.parameters, earlier_shifts_.shifts);
  state.log10_multiplier = start_.log10_multiplier;
  state.roughness = start_.roughness;
  state.target_reached = start_.target_reached;
  state.small_gains = is_iteration_ ? small_gains_before(directory_, start_.iteration, options_.robust) : 0;
  return state;
}

inversion::Settings RunningInversion::settings() const {
  inversion::Settings settings;
  settings.target_rms = start_.target_rms;
  settings.most_iterations = start_.iterations_to_run;
  settings.most_cuts = start_.debug_level < 0 ? 0 : start_.step_cut_count;
  settings.rules = {start_.model_limits, start_.model_value_step, run_.block_parameters()};
  settings.search = options_.search;
  settings.robust = options_.robust;
  settings.threads = options_.threads;
  return settings;
}

// Only now that the start has a response: up to here the directory is as it was.
void RunningInversion::begin() {
  if (!earlier_.empty()) {
    report_.earlier_folder = earlier_.move_away().filename().string();
  }
  log_.emplace(directory_ / inversion_log_name);
}

safe_files::NewFile RunningInversion::response_file(const std::string& name,
                                                    const inversion::Iteration& iteration) const {
  const SiteShifts& shifts = run_.shifts();
  return {directory_ / name,
          plain_response_text(input_.data, std::span(shifts.data()).first(shifts.constraints()),
                              iteration.modelled)};
}

std::vector<safe_files::NewFile> RunningInversion::iteration_files(
    const inversion::Iteration& iteration) const {
  InversionStart left = start_;
  left.iteration = iteration.state.iteration;
  left.log10_multiplier = iteration.state.log10_multiplier;
  left.roughness = iteration.state.roughness;
  left.rms = iteration.rms;
  left.target_reached = iteration.state.target_reached;
  left.parameters = run_.file_parameters(iteration.state.model);
  std::vector<safe_files::NewFile> files;
  // Before the iteration's file: one that is there can be gone on from.
  if (run_.looks_for_shifts()) {
    files.push_back({directory_ / shift_file_name(left.iteration),
                     shift_file_text(run_.found_shifts(iteration.state.model))});
  }
  files.push_back({directory_ / iteration_file_name(left.iteration), iteration_file_text(left)});
  files.push_back(response_file(response_name_of(left.iteration), iteration));
  return files;
}

// An iteration file that is gone on from stays as it is; its response may be lost, as after a crash.
std::vector<safe_files::NewFile> RunningInversion::start_files(const inversion::Iteration& start) {
  std::vector<safe_files::NewFile> files;
  if (!is_iteration_) {
    files = iteration_files(start);
  } else if (const std::string name = response_file_name(from_); !fs::exists(directory_ / name)) {
    files.push_back(response_file(name, start));
  }
  const std::optional<bool> earlier_norm = log_->is_robust();
  changes_norm_ = is_iteration_ && earlier_norm && *earlier_norm != options_.robust;
  std::string head = log_->empty() ? "" : " ** CONTINUED FROM " + from_ + "\n\n";
  if (earlier_norm.value_or(false) != options_.robust) {
    head += options_.robust ? robust_norm : square_norm;
  }
  if (!head.empty()) {
    files.push_back(log_->with(head));
  }
  return files;
}

void RunningInversion::put_into_place(const std::vector<safe_files::NewFile>& files) const {
  try {
    safe_files::write_together(files);
  } catch (const std::exception& failure) {
    std::string what = failure.what();
    if (!report_.steps.empty()) {
      what += "; iteration " + std::to_string(report_.steps.back().iteration) +
              " is in place, and it can be continued";
    } else if (!report_.earlier_folder.empty()) {
      what += "; the earlier inversion is in " + report_.earlier_folder;
    }
    throw std::runtime_error(what);
  }
}

void RunningInversion::take_iteration(const inversion::Iteration& iteration) {
  const bool is_start = report_.steps.empty();
  if (is_start) {
    begin();
    put_into_place(start_files(iteration));
  } else {
    std::vector<safe_files::NewFile> files = iteration_files(iteration);
    files.push_back(log_->with(iteration_log_.end(iteration, run_.block_parameters())));
    put_into_place(files);
  }
  iteration_log_.begin(iteration.state.iteration + 1, iteration.rms, iteration.state.target_reached,
                       start_.debug_level != 0);
  const auto now = std::chrono::steady_clock::now();
  const std::chrono::duration<double> seconds = now - since_;
  since_ = now;
  report_.steps.push_back({iteration.state.iteration, iteration.rms, iteration.state.roughness,
                           iteration.state.log10_multiplier, iteration.step, iteration.trials,
                           seconds.count()});
  if (listener_.step) {
    listener_.step(report_.steps.back());
  }
}

bool RunningInversion::tell_progress(double share) {
  under_way_.share = share;
  return !listener_.progress || listener_.progress(under_way_);
}

// Each response is a trial, but for the one with the sensitivities, which begins an iteration.
inversion::Problem RunningInversion::counted_problem() {
  inversion::Problem problem = run_.problem();
  under_way_ = {start_.iteration, 0, 0.0, true};
  problem.respond = [this, respond = std::move(problem.respond)](std::span<const double> model,
                                                                 inversion::Derivatives derivatives) {
    const bool begins = derivatives == inversion::Derivatives::yes;
    if (begins) {
      under_way_ = {under_way_.iteration + 1, 0, 0.0};
    } else if (!under_way_.of_start) {
      under_way_ = {under_way_.iteration, under_way_.trial + 1, 0.0};
    }
    return respond(model, derivatives);
  };
  return problem;
}

InversionReport RunningInversion::run() {
  if (earlier_.would_be_replaced() && !options_.may_move_earlier) {
    throw EarlierIterations("An earlier inversion has left " + earlier_.text() + " in " +
                            directory_.string() + ".");
  }
  report_.target_rms = start_.target_rms;
  since_ = std::chrono::steady_clock::now();
  const inversion::Problem problem = counted_problem();
  end(inversion::invert(problem, roughness_, settings(), state_,
                        {[this](const inversion::Iteration& iteration) { take_iteration(iteration); },
                         [this](const inversion::Trial& trial) { iteration_log_.add(trial); }}));
  return report_;
}

void RunningInversion::end(const inversion::Outcome& outcome) {
  report_.ending = outcome.ending;
  if (report_.steps.empty()) {
    report_.reason = "Stopped before the first response was done; nothing was written.";
    return;
  }
  const InversionStep& last = report_.steps.back();
  report_.reason =
      ending_sentence({outcome.ending, last.iteration, last.rms, outcome.last.misfit, options_.robust,
                       start_.target_rms, start_.model_limits.has_value(), start_.model_value_step > 0.0,
                       poor_sites(input_.data, outcome.last.modelled)});
  if (changes_norm_) {
    report_.reason += " Up to " + from_ + " outliers counted " +
                      (options_.robust ? "by their squares" : "linearly") + ", from then on " +
                      (options_.robust ? "linearly." : "by their squares.");
  }
  std::string log = iteration_log_.broken_off();
  if (run_.looks_for_shifts()) {
    report_.static_shifts = run_.found_shifts(outcome.last.state.model);
    report_.static_shift_file = shift_file_name(last.iteration);
    log += shift_log(report_.static_shifts, report_.static_shift_file);
  }
  put_into_place({log_->with(log + log_ending(outcome.ending))});
}

}  // namespace

bool is_being_inverted(const fs::path& directory) {
  try {
    return FileLock(directory / inversion_lock_name).state() == FileLock::State::held_elsewhere;
  } catch (const std::runtime_error&) {
    return false;  // nobody can write there
  }
}

InversionReport run_inversion(const fs::path& directory, const InversionOptions& options,
                              const InversionListener& listener) {
  if (!fs::is_directory(directory)) {
    throw std::runtime_error("there is no folder " + directory.string());
  }
  return RunningInversion(fs::weakly_canonical(directory), options, listener).run();
}

}  // namespace Module_occam
