// brenlox_batch plots: all graphs of a line as a PDF document.
#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>

#include "batch/command.h"
#include "batch/offscreen_application.h"
#include "batch/reading_option.h"
#include "core/user_interface.h"
#include "display/selection.h"
#include "display/windows/line_document.h"
#include "platform/graph/frequency_axis.h"
#include "projections/line_distances.h"
#include "projections/survey_projection.h"
#include "tensor/windows/section_pages.h"
#include "tensor/windows/strike_figures.h"

namespace Batch {
namespace {

using namespace Module_display_data;

struct PlotsOptions {
  std::string survey;
  std::string line;
  std::optional<std::int32_t> reference_type;
  std::string data_type;        // empty: the principal one
  std::optional<float> dipole;  // m
  bool by_distance = false;
  bool periods = false;  // on the axes of frequency
  std::string output;
};

/// Selects what the options ask for, and the first station of the line. @return 0, or -1 after a message
int select(const PlotsOptions& options) {
  SelectionLists lists;
  if (fill_selection_lists(lists) != 0) {
    return -1;
  }
  const auto line = std::ranges::find(lists.lines, options.line);
  if (line == lists.lines.end()) {
    user_interface().show_message("There is no line " + options.line);
    return -1;
  }
  if (options.reference_type) {
    static_cast<void>(choose_reference_type(*options.reference_type));
  }
  if (!options.data_type.empty()) {
    static_cast<void>(choose_data_type(options.data_type));
  }
  if (options.dipole) {
    static_cast<void>(choose_dipole(*options.dipole));
  }
  static_cast<void>(choose_line(static_cast<std::int32_t>(line - lists.lines.begin()), options.line));
  return display_station(first_station_of_current_line(), {}).failed ? -1 : 0;
}

/// @return 0, or -1 after the reason why the line has no distances
int require_distances(const std::string& line) {
  static_cast<void>(Module_projections::apply_survey_projection());  // a survey may have none
  const std::string refusal = Module_projections::line_distances(line).refusal;
  if (!refusal.empty()) {
    user_interface().show_message(refusal);
  }
  return refusal.empty() ? 0 : -1;
}

int write_plots(const PlotsOptions& options) {
  if (select(options) != 0 || (options.by_distance && require_distances(options.line) != 0)) {
    return -1;
  }
  const PositionSource positions =
      options.by_distance ? PositionSource::distances : PositionSource::station_numbers;
  const Module_averaged_data::Outcome outcome =
      write_line_document(options.output, positions,
                          joined(Module_tensor::section_pages(positions), Module_tensor::strike_pages()));
  if (outcome == Module_averaged_data::Outcome::stopped) {
    user_interface().show_message("Stopped; nothing was written");
  }
  if (outcome != Module_averaged_data::Outcome::finished) {
    return -1;
  }
  std::cout << "The graphs of line " << options.line << " are written to " << options.output << '\n';
  return 0;
}

int run_plots(PlotsOptions& options) {
  options.output = path_from_here(options.output);
  const OffscreenApplication application;
  graph::FrequencyAxis::instance().show_periods(options.periods);
  return with_open_survey(options.survey, options.line, [&] { return write_plots(options); });
}

}  // namespace

Command add_plots_command(Program& program) {
  const auto options = std::make_shared<PlotsOptions>();
  Parser parser = program.add_command(
      "plots",
      "Writes all graphs of a line to one PDF: the profile, a page for each station, pseudo-sections");
  add_survey_argument(parser, options->survey);
  parser.add_option("--line", options->line, "survey line, as 200E").required();
  parser.add_option("--output", options->output, "path of the PDF; an earlier file is replaced").required();
  parser
      .add_option("--reference", options->reference_type,
                  reference_types_help + std::string("; left out: the first one"))
      .in_range(0, last_reference_type);
  parser
      .add_option("--data-type", options->data_type,
                  data_types_help + std::string("; left out: the principal one"))
      .one_of_in_any_case(data_types());
  parser.add_option("--dipole", options->dipole, "dipole length, m; left out: the shortest one");
  parser.add_flag(
      "--by-distance", options->by_distance,
      "the profile by metres along the line, from the places of the sites, not by station numbers");
  parser.add_flag("--periods", options->periods, "axes of frequency show periods, which rise to the right");
  return {parser, [options] { return run_plots(*options); }};
}

}  // namespace Batch
