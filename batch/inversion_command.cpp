// brenlox_batch inversion: Occam's two-dimensional inversion of a run directory.
#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <vector>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "formats/occam/data_type.h"
#include "occam/inversion/iteration_estimate.h"
#include "occam/inversion/run_inversion.h"
#include "occam/results/run_results.h"
#include "platform/files/folder_access.h"
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

constexpr const char* report_failed = "The course of the inversion can't be written: ";

/// Throws for a place where the report can't be written, or would replace a file of the run, also one that is
/// yet to come.
void refuse_report(const InversionCommand& command) {
  const std::filesystem::path report(command.json_path);
  if (std::filesystem::is_directory(report)) {
    throw std::runtime_error(command.json_path + " is a folder");
  }
  if (!std::filesystem::is_directory(report.parent_path()) || !can_write_into(report.parent_path())) {
    throw std::runtime_error(command.json_path + ": the folder is missing or can't be written");
  }
  std::error_code missing;
  if (std::filesystem::equivalent(report.parent_path(), command.directory, missing) &&
      !equal_ignoring_case(report.extension().string(), ".json")) {
    throw std::runtime_error(command.json_path + ": in the folder of the run a report ends in .json");
  }
}

void print_step(const InversionStep& step) {
  const auto column = [](const std::string& text, std::size_t width) {
    std::cout << pad_field(text, std::max(width, text.size() + 1));
  };
  column(std::to_string(step.iteration), 9);
  column(format_number(step.rms, "0.0000"), 10);
  column(format_number(step.roughness, "0.000"), 12);
  column(format_number(step.log10_multiplier, "0.000"), 12);
  column(std::to_string(step.trials), 8);
  column(format_number(step.seconds, "0.0"), 9);
  std::cout << '\n' << std::flush;
}

bool is_done(Ending ending) { return ending != Ending::no_better_fit && ending != Ending::stopped; }

/// @param reason  why it ended, or failed
Json to_json(int status, const std::string& reason, const std::vector<InversionStep>& steps) {
  Json json;
  json["status"] = status;
  json["reason"] = reason;
  json["iterations"] = Json::array();
  for (const InversionStep& step : steps) {
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

void add_shifts(Json& json, const InversionReport& report) {
  if (report.static_shift_file.empty()) {
    return;
  }
  json["static_shift_file"] = report.static_shift_file;
  json["static_shifts"] = Json::array();
  for (const Module_occam::StaticShift& shift : report.static_shifts.shifts) {
    json["static_shifts"].push_back(
        {{"site", shift.site_number}, {"data_type", shift.data_type}, {"decades", shift.shift}});
  }
}

void print_shifts(const InversionReport& report) {
  if (report.static_shift_file.empty()) {
    return;
  }
  std::cout << "Static shifts, decades, in " << report.static_shift_file << ":\n";
  for (const Module_occam::StaticShift& shift : report.static_shifts.shifts) {
    const bool te = shift.data_type == static_cast<int>(Module_occam::DataType::te_resistivity);
    std::cout << "  site " << shift.site_number << (te ? " TE " : " TM ")
              << format_number(shift.shift, "0.000") << '\n';
  }
}

void write_json(const InversionCommand& command, const Json& json) {
  if (command.json_path == "-") {
    std::cout << json.dump(2) << '\n';
  } else if (!command.json_path.empty()) {
    safe_files::write_into_place(command.json_path, json.dump(2) + '\n');
  }
}

/// The steps that it tells are kept, so that a failure leaves them.
InversionReport invert_run(const InversionCommand& command, std::vector<InversionStep>& steps) {
  const bool tells_course = command.json_path != "-";
  Module_occam::IterationEstimate estimate;
  const auto since = std::chrono::steady_clock::now();
  Module_occam::InversionListener listener;
  listener.step = [&](const InversionStep& step) {
    user_interface().show_progress("", -1);
    if (tells_course && steps.empty()) {
      std::cout << "iteration       RMS   roughness  multiplier  trials  seconds\n";
    }
    steps.push_back(step);
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
  return Module_occam::run_inversion(command.directory, command.options, listener);
}

int report_end(const InversionCommand& command, const InversionReport& report) {
  user_interface().show_progress("", -1);
  const int status = is_done(report.ending) ? status_done : status_failed;
  if (!report.earlier_folder.empty()) {
    user_interface().show_message("The earlier inversion is in " + report.earlier_folder);
  }
  if (command.json_path != "-") {
    print_shifts(report);
  }
  if (status != status_done) {
    user_interface().show_message(report.reason);
  } else if (command.json_path != "-") {
    std::cout << report.reason << '\n';
  }
  Json json = to_json(status, report.reason, report.steps);
  add_shifts(json, report);
  write_json(command, json);
  return status;
}

int report_failure(const InversionCommand& command, const std::string& reason,
                   const std::vector<InversionStep>& steps) {
  user_interface().show_progress("", -1);
  user_interface().show_message(reason);
  write_json(command, to_json(status_failed, reason, steps));
  return status_failed;
}

int invert_and_report(const InversionCommand& command) {
  std::vector<InversionStep> steps;
  InversionReport report;
  try {
    report = invert_run(command, steps);
  } catch (const Module_occam::EarlierIterations& earlier) {
    return report_failure(command,
                          earlier.what() +
                              std::string(" With --overwrite they move into a folder of their own") +
                              (command.options.go_on ? "." : "; --continue goes on from the last one."),
                          steps);
  } catch (const std::exception& failure) {
    return report_failure(command, failure_message("The inversion failed: ", failure), steps);
  }
  return report_end(command, report);
}

int run_inversion_command(InversionCommand& command) {
  using numerics::occam_inversion::Search;
  command.options.search = command.search == SearchChoice::classic ? Search::classic : Search::better;
  command.options.threads = static_cast<std::size_t>(command.threads.value_or(0));
  if (!command.json_path.empty() && command.json_path != "-") {
    command.json_path = path_from_here(command.json_path);
    // Hours later would be too late.
    if (trap_errors(report_failed, [&] { refuse_report(command); }) != 0) {
      return status_failed;
    }
  }
  int status = status_failed;
  return trap_errors(report_failed, [&] { status = invert_and_report(command); }) == 0 ? status
                                                                                       : status_failed;
}

std::string fault_of_roughness_type(const std::string& text) {
  const double type = numeric_value(text);
  const bool known = type == 1.0 || type == 3.0 || type == 4.0 || (type > 100.0 && type < 200.0) ||
                     (type > 200.0 && type < 300.0);
  return known ? "" : "the roughness types are 1, 3, 4, 101 to 199 and 201 to 299";
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
  Parser start = parser.add_alternatives("Start", "where to begin");
  start.add_option("--from", options.from,
                   "start or iteration file to begin with; the start file without it");
  start.add_flag("--continue", options.go_on, "go on from the iteration file with the highest number");
  parser.add_option("--iterations", options.iterations, "iterations to run, in place of the file's")
      .in_range(1, Module_occam::max_iteration);
  parser.add_option("--target-rms", options.target_rms, "in place of the file's").above_zero();
  parser.add_option("--roughness-type", options.roughness_type, "1, 3, 4, 101 to 199 or 201 to 299")
      .checked(fault_of_roughness_type);
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
