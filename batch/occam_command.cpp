// brenlox_batch occam: the merged curves of a line as a run directory of the two-dimensional inversion.
#include <iostream>
#include <memory>

#include "batch/command.h"
#include "batch/reading_option.h"
#include "batch/rhoplus_option.h"
#include "batch/rotate_option.h"
#include "core/user_interface.h"
#include "occam/setup/create_inversion.h"
#include "projections/line_distances.h"
#include "projections/survey_projection.h"

namespace Batch {
namespace {

using Module_occam::InversionInputs;
using Module_occam::ModeChoice;

constexpr const char* as_before = "as-before";
constexpr const char* relative = "relative";

struct OccamOptions {
  std::string survey;
  Module_database::LineSelection reading;
  InversionInputs inputs;
  std::string errors;  // as_before or relative; blank: as is usual for the modes
  Module_output::RhoplusSettings rhoplus;
};

/// Says where positions by station numbers are wrong.
void warn_of_station_numbers(const std::string& line) {
  const Module_projections::LineDistances distances = Module_projections::line_distances(line);
  if (!distances.warning.empty()) {
    user_interface().show_message(distances.warning + (distances.known() ? ": see --by-distance" : ""));
  }
}

int create_run(const OccamOptions& options) {
  static_cast<void>(Module_projections::apply_survey_projection());  // a survey may have none
  if (options.inputs.positions == Module_occam::PositionSource::station_numbers) {
    warn_of_station_numbers(options.reading.line);
  }
  Module_occam::CreatedInversion created;
  if (Module_occam::create_inversion(options.reading, options.inputs, options.rhoplus, {}, created) != 0) {
    return -1;
  }
  if (created.stopped) {
    user_interface().show_message("Stopped; nothing was written");
    return -1;
  }
  std::cout << created.data_count << " data written to " << created.directory << '\n';
  return 0;
}

/// What is missing or too much in a run of one mode. Null if nothing is.
const char* fault_of_one_mode(const OccamOptions& options) {
  if (options.inputs.modes == ModeChoice::both) {
    return nullptr;
  }
  if (options.reading.data_type.empty()) {
    return "--data-type is required, unless --modes is both";
  }
  return options.inputs.te_res_error_floor.empty() && options.inputs.te_phase_error_floor.empty()
             ? nullptr
             : "--te-res-floor and --te-phase-floor need --modes both";
}

int run_occam(OccamOptions& options) {
  if (const char* const fault = fault_of_one_mode(options)) {
    user_interface().show_message(fault);
    return status_wrong_usage;
  }
  if (!options.errors.empty()) {
    options.inputs.errors =
        options.errors == relative ? Module_occam::ErrorForm::relative : Module_occam::ErrorForm::as_before;
  }
  std::string& directory = options.inputs.directory;
  directory = path_from_here(directory);
  Module_occam::InversionChoices choices;
  if (Module_occam::check_inversion_inputs(options.inputs, choices) != 0) {
    return status_wrong_usage;
  }
  return with_open_survey(options.survey, options.reading.line, [&] { return create_run(options); });
}

// Entries are texts and are checked as those of the window are.
void add_entries(Parser& parser, InversionInputs& inputs) {
  struct Entry {
    const char* option;
    std::string InversionInputs::*text;
    const char* help;
  };
  constexpr Entry entries[] = {
      {"--model-file", &InversionInputs::model_file, "name of the model file"},
      {"--data-file", &InversionInputs::data_file, "name of the data file"},
      {"--iterations", &InversionInputs::max_iterations, "maximum number of iterations"},
      {"--rms", &InversionInputs::target_RMS, "misfit at which the inversion stops"},
      {"--res-floor", &InversionInputs::res_error_floor, "minimum error of a resistivity, percent"},
      {"--phase-floor", &InversionInputs::phase_error_floor,
       "minimum error of a phase: percent of the phase, or degrees with --errors relative"},
      {"--te-res-floor", &InversionInputs::te_res_error_floor,
       "with --modes both, minimum error of a TE resistivity, percent; blank: as TM"},
      {"--te-phase-floor", &InversionInputs::te_phase_error_floor,
       "with --modes both, minimum error of a TE phase; blank: as TM"},
      {"--layers", &InversionInputs::num_layers, "layers of the model, the padding at the bottom included"},
      {"--layers-per-decade", &InversionInputs::layers_per_decade, "layers per decade of depth"},
      {"--top-layer", &InversionInputs::top_layer, "thickness of the top layer, m"},
      {"--block-width", &InversionInputs::block_width, "width of the blocks between stations, m"},
      {"--doubling-threshold", &InversionInputs::doubling_threshold,
       "two blocks are joined where they are narrower than the layer's thickness over this"},
      {"--initial-res", &InversionInputs::initial_res, "resistivity of the starting model, ohm-m"},
      {"--start-station", &InversionInputs::first_station,
       "first station that takes part; blank: from the beginning of the line"},
      {"--end-station", &InversionInputs::last_station,
       "last station that takes part; blank: to the end of the line"},
      {"--description", &InversionInputs::description, "title of the files"},
      {"--subdirectory", &InversionInputs::occam_directory,
       "folder to create in the directory for the files"}};
  for (const Entry& entry : entries) {
    parser.add_option(entry.option, inputs.*entry.text, entry.help).shows_default();
  }
  parser.add_flag(
      "--by-distance", [&inputs] { inputs.positions = Module_occam::PositionSource::distances; },
      "positions of the stations along the line from the places of the sites, not from station numbers");
  parser.add_switch_off(
      "--standard-deviation", inputs.use_standard_error,
      "errors as before: of resistivities as standard deviations, not by the standard error formula");
  parser.add_switch_off("--no-rhoplus", inputs.use_rhoplus_error,
                        "leave the misfit of one-dimensional inversion out of the errors");
  parser.add_switch_off("--no-static", inputs.apply_static, "leave static shift corrections out");
}

}  // namespace

Command add_occam_command(Program& program) {
  const auto options = std::make_shared<OccamOptions>();
  Parser parser =
      program.add_command("occam", "Creates the run directory of a two-dimensional inversion of a line");
  add_survey_argument(parser, options->survey);
  add_reading_options(parser, options->reading, DataTypeIs::optional);
  parser.add_choice(
      "--modes", options->inputs.modes, {{"current", ModeChoice::current_type}, {"both", ModeChoice::both}},
      "current: the data type, EyHx as TE and others as TM; both: TE from EyHx and TM from ExHy");
  parser
      .add_option(
          "--errors", options->errors,
          "as-before, the default for one mode: a resistivity's error grows with the size of its "
          "logarithm, 5 % giving 0.001 decades at 1 ohm-m and 0.15 at 1000; relative, the default for "
          "both: the same share of every resistivity, and phase floors in degrees")
      .one_of({as_before, relative});
  parser.add_option("--directory", options->inputs.directory, "folder of the files, created if it is missing")
      .required();
  add_entries(parser, options->inputs);
  add_rotate_option(
      parser, options->inputs.rotate_to_strike,
      "azimuth of the strike, degrees from north, that the tensors are rotated to: TE is then the "
      "element whose electric field is along the strike, TM the one across, whatever the axes of "
      "the readings");
  add_file_errors_flag(parser, options->rhoplus);
  add_overwrite_flag(parser, "replace an earlier inversion in the folder, which is kept in earlier_1");
  return {parser, [options] { return run_occam(*options); }};
}

}  // namespace Batch
