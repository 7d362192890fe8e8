#include "occam/inversion/run_inversion.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/model_extras.h"
#include "formats/occam/model_file.h"
#include "formats/occam/start_file.h"
#include "formats/occam/text_input.h"
#include "occam/inversion/earlier_iterations.h"
#include "occam/inversion/inversion_files.h"
#include "occam/inversion/run_problem.h"
#include "platform/files/file_lock.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

// Adds the file's name to what a reader says.
template <class Read>
auto read_file(const std::string& name, const Read& read) {
  try {
    return read();
  } catch (const EmptyLine&) {
    throw std::runtime_error(name + ": an empty line where text is expected");
  } catch (const std::exception& failure) {
    throw std::runtime_error(name + ": " + failure.what());
  }
}

std::size_t parameter_of(const std::variant<int, BlockPlace>& place, const OccamModel& model) {
  if (const int* const number = std::get_if<int>(&place)) {
    if (*number < 1 || *number > model.num_free_params) {
      throw std::runtime_error("an exception of the roughness names parameter " + std::to_string(*number) +
                               " of " + std::to_string(model.num_free_params));
    }
    return static_cast<std::size_t>(*number - 1);
  }
  const BlockPlace& block = std::get<BlockPlace>(place);
  const std::string name =
      "block " + std::to_string(block.block_number) + " of layer " + std::to_string(block.layer_number);
  if (block.layer_number < 1 || block.layer_number > model.num_layers() || block.block_number < 1 ||
      block.block_number > model.layers[static_cast<std::size_t>(block.layer_number - 1)].layer_blocks()) {
    throw std::runtime_error("an exception of the roughness names " + name + ", which there is not");
  }
  const int number = model.layer_block(block.layer_number - 1, block.block_number - 1).parameter_number;
  if (number < 1) {
    throw std::runtime_error("an exception of the roughness names " + name + ", which is fixed");
  }
  return static_cast<std::size_t>(number - 1);
}

inversion::Roughness roughness_of(const RunProblem& run, const OccamModel& model, const InversionStart& start,
                                  const ModelExtras& extras) {
  inversion::RoughnessRules rules;
  rules.type = start.roughness_type;
  rules.diagonals = start.diagonal_penalties;
  for (const LinkException& entry : extras.exceptions) {
    rules.by_hand.push_back(
        {parameter_of(entry.first, model), parameter_of(entry.second, model), entry.weight});
  }
  std::vector<inversion::Prejudice> prejudices;
  for (const PrejudiceValue& entry : extras.prejudices) {
    if (entry.parameter_number < 1 || entry.parameter_number > model.num_free_params) {
      throw std::runtime_error("a prejudice names parameter " + std::to_string(entry.parameter_number) +
                               " of " + std::to_string(model.num_free_params));
    }
    prejudices.push_back({static_cast<std::size_t>(entry.parameter_number - 1), entry.value, entry.weight});
  }
  const std::vector<inversion::Block> blocks = run.blocks();
  return {blocks, run.parameters(), rules, std::move(prejudices)};
}

// The log so far, to which each iteration adds; whole at any moment.
class RunLog {
 public:
  explicit RunLog(fs::path file) : file_(std::move(file)) {
    std::ifstream earlier(file_, std::ios::binary);
    std::ostringstream text;
    text << earlier.rdbuf();
    text_ = text.str();
  }
  [[nodiscard]] safe_files::NewFile with(const std::string& more) {
    text_ += more;
    return {file_, text_};
  }

 private:
  fs::path file_;
  std::string text_;
};

class RunningInversion {
 public:
  RunningInversion(fs::path directory, const InversionOptions& options, const InversionListener& listener)
      : directory_(std::move(directory)),
        options_(options),
        listener_(listener),
        lock_(directory_ / inversion_lock_name),
        from_(start_name()),
        start_(read_file(from_, [&] { return read_start_file((directory_ / from_).string()); })),
        data_(read_file(start_.data_file,
                        [&] { return read_data_file((directory_ / start_.data_file).string()); })),
        model_(read_file(start_.model_file,
                         [&] { return read_model_file(directory_, start_.model_file, sites()); })),
        run_(model_, data_, {options.threads, options.static_shift}, listener.progress),
        roughness_(roughness_of(run_, model_, with_options(), read_file(start_.model_file, [&] {
                                  return read_model_extras(directory_, start_.model_file);
                                }))) {}

  InversionReport run();

 private:
  [[nodiscard]] std::string start_name() const;
  [[nodiscard]] OccamData sites() const;
  const InversionStart& with_options();
  void move_earlier() const;
  void take_iteration(const inversion::Iteration& iteration);

  fs::path directory_;
  const InversionOptions& options_;
  const InversionListener& listener_;
  FileLock lock_;
  std::string from_;
  InversionStart start_;
  ObservedData data_;
  OccamModel model_;
  RunProblem run_;
  inversion::Roughness roughness_;
  std::optional<RunLog> log_;
  IterationLog iteration_log_;
  InversionReport report_;
  std::chrono::steady_clock::time_point since_;
};

std::string RunningInversion::start_name() const {
  if (lock_.state() == FileLock::State::held_elsewhere) {
    throw std::runtime_error("Another inversion is running in " + directory_.string() + ".");
  }
  if (!options_.from.empty()) {
    return options_.from;
  }
  const std::string last = options_.go_on ? last_iteration_file(directory_) : std::string();
  return last.empty() ? find_start_file(directory_) : last;
}

OccamData RunningInversion::sites() const {
  OccamData sites;
  sites.site_names = data_.site_names;
  for (const double offset : data_.site_offsets) {
    sites.site_offsets.push_back(static_cast<float>(offset));
  }
  return sites;
}

const InversionStart& RunningInversion::with_options() {
  start_.iterations_to_run = options_.iterations.value_or(start_.iterations_to_run);
  start_.target_rms = options_.target_rms.value_or(start_.target_rms);
  start_.roughness_type = options_.roughness_type.value_or(start_.roughness_type);
  if (!(start_.target_rms > 0.0)) {
    throw std::runtime_error("the target misfit is " + plain_text(start_.target_rms));
  }
  return start_;
}

void RunningInversion::move_earlier() const {
  const EarlierIterationFiles earlier(directory_, start_.iteration == 0 ? -1 : start_.iteration);
  if (!earlier.found()) {
    return;
  }
  if (!options_.may_move_earlier) {
    throw EarlierIterations("An earlier inversion has left " + earlier.text() + " in " + directory_.string() +
                            ".");
  }
  (void)earlier.move_away();
}

void RunningInversion::take_iteration(const inversion::Iteration& iteration) {
  const auto now = std::chrono::steady_clock::now();
  const std::chrono::duration<double> seconds = now - since_;
  since_ = now;
  const bool is_start = iteration.state.iteration == start_.iteration;
  const InversionStep step{iteration.state.iteration,
                           iteration.rms,
                           iteration.state.roughness,
                           iteration.state.log10_multiplier,
                           iteration.step,
                           iteration.trials,
                           seconds.count()};
  InversionStart left = start_;
  left.iteration = iteration.state.iteration;
  left.log10_multiplier = iteration.state.log10_multiplier;
  left.roughness = iteration.state.roughness;
  left.rms = iteration.rms;
  left.target_reached = iteration.state.target_reached;
  left.parameters = run_.file_parameters(iteration.state.model);
  if (!is_start || start_.iteration == 0) {
    std::vector<safe_files::NewFile> files{
        {directory_ / iteration_file_name(left.iteration), iteration_file_text(left)},
        {directory_ / response_name_of(left.iteration),
         plain_response_text(data_, std::span(iteration.modelled).first(data_.rows.size()))}};
    if (!is_start) {
      files.push_back(log_->with(iteration_log_.end(iteration)));
    }
    safe_files::write_together(files);
  }
  iteration_log_.begin(left.iteration + 1, iteration.rms);
  report_.steps.push_back(step);
  if (listener_.step) {
    listener_.step(step);
  }
}

InversionReport RunningInversion::run() {
  move_earlier();
  log_.emplace(directory_ / inversion_log_name);
  report_.target_rms = start_.target_rms;
  inversion::Settings settings;
  settings.target_rms = start_.target_rms;
  settings.most_iterations = start_.iterations_to_run;
  settings.most_cuts = start_.step_cut_count;
  settings.rules = {start_.model_limits, start_.model_value_step};
  settings.search = options_.search;
  settings.robust = options_.robust;
  settings.threads = options_.threads;
  inversion::State state;
  state.iteration = start_.iteration;
  state.model = run_.model_of(start_.parameters);
  state.log10_multiplier = start_.log10_multiplier;
  state.roughness = start_.roughness;
  state.target_reached = start_.target_reached;
  since_ = std::chrono::steady_clock::now();
  const inversion::Problem problem = run_.problem();
  const inversion::Outcome outcome =
      inversion::invert(problem, roughness_, settings, std::move(state),
                        {[this](const inversion::Iteration& iteration) { take_iteration(iteration); },
                         [this](const inversion::Trial& trial) { iteration_log_.add(trial); }});
  const safe_files::NewFile log = log_->with(log_ending(outcome.ending));
  safe_files::write_into_place(log.destination, log.contents);
  if (options_.static_shift) {
    const std::string shifts = run_.shift_file_text(outcome.last.state.model);
    safe_files::write_into_place(directory_ / "Statics.found", shifts);
  }
  report_.ending = outcome.ending;
  report_.reason = ending_sentence(
      outcome.ending, report_.steps.empty() ? InversionStep{} : report_.steps.back(), start_.target_rms);
  return report_;
}

}  // namespace

InversionReport run_inversion(const fs::path& directory, const InversionOptions& options,
                              const InversionListener& listener) {
  if (!fs::is_directory(directory)) {
    throw std::runtime_error("There is no folder " + directory.string());
  }
  return RunningInversion(fs::absolute(directory), options, listener).run();
}

std::string find_start_file(const fs::path& directory) {
  std::vector<std::string> starts;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    const std::string name = entry.path().filename().string();
    if (!entry.is_regular_file()) {
      continue;
    }
    if (equal_ignoring_case(name, "startup")) {
      return name;
    }
    constexpr std::uintmax_t most_bytes = 50'000'000;
    try {
      if (entry.file_size() < most_bytes &&
          TextInput(entry.path().string()).line().find("OCCAMITER_") != std::string_view::npos &&
          read_start_file(entry.path().string()).iteration == 0 &&
          !equal_ignoring_case(std::string_view(name).substr(0, 4), "ITER")) {
        starts.push_back(name);
      }
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): another kind of file
    }
  }
  if (starts.size() == 1) {
    return starts.front();
  }
  throw std::runtime_error(starts.empty() ? "There is no start file in " + directory.string() + "."
                                          : "There are several start files in " + directory.string() + ": " +
                                                starts[0] + ", " + starts[1] + ".");
}

std::string last_iteration_file(const fs::path& directory) {
  const std::map<int, std::string> files = iteration_files_of(directory);
  return files.empty() ? std::string() : files.rbegin()->second;
}

std::string ending_sentence(inversion::Ending ending, const InversionStep& last, double target_rms) {
  const std::string rms = "RMS " + format_number(last.rms, "0.000");
  const std::string after =
      " after " + std::to_string(last.iteration) + (last.iteration == 1 ? " iteration" : " iterations");
  switch (ending) {
    case inversion::Ending::smooth_and_fitting:
      return rms + after + "; the model is the smoothest one found that fits to the target.";
    case inversion::Ending::perfectly_smooth:
      return rms + after + "; a uniform ground fits to the target.";
    case inversion::Ending::iterations_done:
      return rms + after +
             (last.rms <= 1.01 * target_rms
                  ? "; the target is reached, and more iterations may smooth the model."
                  : "; the target of " + plain_text(target_rms) + " is not reached yet.");
    case inversion::Ending::no_better_fit:
      return "Stopped improving at " + rms + after + "; the target of " + plain_text(target_rms) +
             " asks for larger errors.";
    case inversion::Ending::stopped:
      break;
  }
  return "Stopped at " + rms + after + "; it can be continued.";
}

}  // namespace Module_occam
