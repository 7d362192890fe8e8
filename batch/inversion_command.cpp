// brenlox_batch inversion: Occam's two-dimensional inversion of a run directory.
#include <chrono>
#include <iostream>
#include <memory>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "occam/inversion/iteration_estimate.h"
#include "occam/inversion/run_inversion.h"
#include "platform/files/safe_files.h"

namespace Batch {
namespace {

using Module_occam::InversionReport;
using Module_occam::InversionStep;
using numerics::occam_inversion::Ending;
using Json = nlohmann::ordered_json;

enum class SearchChoice : std::uint8_t { better, classic };

struct InversionCommand {
  std::string directory;
  Module_occam::InversionOptions options;
  std::optional<int> threads;
  SearchChoice search = SearchChoice::better;
  std::string json_path;
};

constexpr const char* inversion_failed = "The inversion failed: ";

void print_step(const InversionStep& step) {
  const auto column = [](const std::string& text, std::size_t width) {
    std::cout << pad_field(text, std::max(width, text.size()));
  };
  column(std::to_string(step.iteration), 9);
  column(format_number(step.rms, "0.0000"), 10);
  column(format_number(step.roughness, "0.000"), 12);
  column(format_number(step.log10_multiplier, "0.000"), 12);
  column(std::to_string(step.trials), 8);
  column(format_number(step.seconds, "0.0"), 9);
  std::cout << '\n' << std::flush;
}

std::string reason_text(const Ending ending) {
  switch (ending) {
    case Ending::smooth_and_fitting:
      return "target reached";
    case Ending::perfectly_smooth:
      return "perfectly smooth";
    case Ending::iterations_done:
      return "iterations done";
    case Ending::no_better_fit:
      return "no better fit";
    case Ending::stopped:
      break;
  }
  return "stopped";
}

bool is_done(Ending ending) { return ending != Ending::no_better_fit && ending != Ending::stopped; }

Json to_json(const InversionReport& report) {
  Json json;
  json["status"] = is_done(report.ending) ? status_done : status_failed;
  json["reason"] = reason_text(report.ending);
  json["iterations"] = Json::array();
  for (const InversionStep& step : report.steps) {
    json["iterations"].push_back({{"iteration", step.iteration},
                                  {"rms", step.rms},
                                  {"roughness", step.roughness},
                                  {"log10_multiplier", step.log10_multiplier},
                                  {"step", step.step},
                                  {"trials", step.trials},
                                  {"seconds", step.seconds}});
  }
  return json;
}

int invert_run(const InversionCommand& command) {
  const bool tells_course = command.json_path != "-";
  if (tells_course) {
    std::cout << "iteration       RMS   roughness  multiplier  trials  seconds\n";
  }
  Module_occam::IterationEstimate estimate;
  const auto since = std::chrono::steady_clock::now();
  Module_occam::InversionListener listener;
  listener.step = [&](const InversionStep& step) {
    user_interface().show_progress("", -1);
    if (tells_course) {
      print_step(step);
    }
  };
  listener.progress = [&](const Module_occam::InversionProgress& progress) {
    const std::chrono::duration<double> now = std::chrono::steady_clock::now() - since;
    estimate.take(progress, now.count());
    user_interface().show_progress(estimate.text(), static_cast<int>(100.0 * estimate.share()));
    return !user_interface().stop_requested();
  };
  const InversionReport report = Module_occam::run_inversion(command.directory, command.options, listener);
  user_interface().show_progress("", -1);
  if (command.json_path == "-") {
    std::cout << to_json(report).dump(2) << '\n';
  } else if (!command.json_path.empty()) {
    safe_files::write_into_place(command.json_path, to_json(report).dump(2) + '\n');
  }
  if (tells_course) {
    std::cout << report.reason << '\n';
  } else if (!is_done(report.ending)) {
    user_interface().show_message(report.reason);
  }
  return is_done(report.ending) ? 0 : -1;
}

int run_inversion_command(InversionCommand& command) {
  using numerics::occam_inversion::Search;
  command.options.search = command.search == SearchChoice::classic ? Search::classic : Search::better;
  command.options.threads = static_cast<std::size_t>(command.threads.value_or(0));
  if (!command.json_path.empty() && command.json_path != "-") {
    command.json_path = path_from_here(command.json_path);
  }
  const int status = trap_errors(inversion_failed, [&] {
    try {
      return invert_run(command);
    } catch (const Module_occam::EarlierIterations& earlier) {
      user_interface().show_message(earlier.what() +
                                    std::string(" With --overwrite they move into a folder of their own; "
                                                "--continue goes on from the last one."));
      return -1;
    }
  });
  return status == 0 ? status_done : status_failed;
}

}  // namespace

Command add_inversion_command(Program& program) {
  const auto command = std::make_shared<InversionCommand>();
  Module_occam::InversionOptions& options = command->options;
  Parser parser = program.add_command(
      "inversion", "Inverts a run directory in two dimensions (Occam); \"invert\" is Rho+ in one dimension");
  parser.add_option("RUN_DIRECTORY", command->directory, "with start, model, mesh and data file")
      .required()
      .existing_directory();
  parser.add_option("--from", options.from,
                    "start or iteration file to begin with; the start file without it");
  parser.add_flag("--continue", options.go_on, "go on from the iteration file with the highest number");
  parser.add_option("--iterations", options.iterations, "iterations to run, in place of the file's")
      .in_range(1, 9999);
  parser.add_option("--target-rms", options.target_rms, "in place of the file's").above_zero();
  parser.add_option("--roughness-type", options.roughness_type, "1, 3, 4, 101 to 199 or 201 to 299");
  parser.add_choice("--search", command->search,
                    {{"better", SearchChoice::better}, {"classic", SearchChoice::classic}},
                    "over multiplier and step length");
  parser.add_flag("--huber", options.robust, "residuals beyond 1.5 errors count linearly");
  parser
      .add_option("--static-shift", options.static_shift,
                  "decades: an unknown static shift for each site and mode, drawn to 0 with this error")
      .above_zero();
  parser.add_option("--threads", command->threads, "as many as the machine has cores without it")
      .in_range(1, 1024);
  parser.add_option("--json", command->json_path, "write the course to this file as JSON; - prints it")
      .may_lack_value("-");
  parser.add_flag("--overwrite", options.may_move_earlier,
                  "iterations of an earlier inversion that would be replaced move into earlier_N");
  return {parser, [command] { return run_inversion_command(*command); }};
}

}  // namespace Batch
