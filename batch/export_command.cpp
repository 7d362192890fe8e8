// brenlox_batch export: curves, tensors and places as files that other packages read.
#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "batch/command.h"
#include "batch/line_options.h"
#include "batch/reading_option.h"
#include "batch/rhoplus_option.h"
#include "batch/rotate_option.h"
#include "core/user_interface.h"
#include "exchange/export_files.h"
#include "platform/files/files_in_use.h"
#include "projections/survey_projection.h"
#include "reduction/each_item.h"
#include "tensor/shared_remarks.h"

namespace Batch {
namespace {

using namespace Module_exchange;

struct ExportOptions {
  LineOptions line;
  std::string format;
  ExportChoices choices;
  bool with_rhoplus = false;
  Module_output::RhoplusSettings rhoplus;
};

void tell(const ExportChoices& choices, const ExportResult& result) {
  for (const Module_tensor::SharedRemark& remark : Module_tensor::shared_remarks(result.remarks)) {
    user_interface().show_message(remark.text);
  }
  if (!result.files.empty() || result.stopped) {
    std::cout << export_summary(choices, result) << '\n';
  }
}

int write_lines(const ExportChoices& choices) {
  if (const std::string fault = fault_of(choices); !fault.empty()) {
    user_interface().show_message(fault);
    return status_wrong_usage;
  }
  Module_averaged_data::WorkProgress progress("Writing the files", 1);
  ExportResult result;
  const int status = export_files(
      choices,
      [&](double share) {
        progress.show(0, share);
        return !user_interface().stop_requested();
      },
      result);
  tell(choices, result);
  return status != 0 || result.stopped || result.declined ? -1 : 0;
}

bool same_inversion(const Module_output::RhoplusSettings& a, const Module_output::RhoplusSettings& b) {
  const auto options = [](const Module_output::RhoplusSettings& settings) {
    return std::tie(settings.resistivity_error_floor, settings.phase_error_floor, settings.resistivity_scale,
                    settings.surface, settings.apply_static, settings.exclude_negative_phase,
                    settings.use_file_errors);
  };
  return options(a) == options(b);
}

/// What was typed for nothing, a sentence; empty if there is a use for all of it.
std::string fault_of_options(const ExportOptions& options) {
  if (!options.choices.plot_link.empty() && !is_map(options.choices.format)) {
    return "--plot-link is for geojson and kml only";
  }
  if (!options.with_rhoplus && !same_inversion(options.rhoplus, {})) {
    return "--floor and the other settings of Rho+ are for csv with --rhoplus only";
  }
  return {};
}

int run_export(ExportOptions& options) {
  ExportChoices& choices = options.choices;
  const auto format = std::ranges::find(export_format_names, options.format);
  choices.format = static_cast<ExportFormat>(format - export_format_names.begin());
  choices.folder = path_from_here(choices.folder);
  if (options.with_rhoplus) {
    choices.rhoplus = options.rhoplus;
  }
  const safe_files::FilesInUse inputs({options.line.survey});
  if (const std::string fault = fault_of_options(options); !fault.empty()) {
    user_interface().show_message(fault);
    return status_wrong_usage;
  }
  return with_lines(
      options.line,
      [&](const std::vector<Module_tensor::LineChoice>& lines) {
        static_cast<void>(Module_projections::apply_survey_projection());  // a survey may have none
        choices.lines = lines;
        return write_lines(choices);
      },
      line_kinds(choices.format));
}

}  // namespace

Command add_export_command(Program& program) {
  const auto options = std::make_shared<ExportOptions>();
  Parser parser = program.add_command(
      "export", "Writes curves, tensors and places of stations as files that other packages read");
  add_line_options(parser, options->line, LineIs::optional);
  parser
      .add_option("--format", options->format,
                  "edi, emtfxml: a file a station; csv: tables of a line; geojson, kml: places for maps")
      .required()
      .one_of_in_any_case({export_format_names.begin(), export_format_names.end()});
  parser.add_option("--directory", options->choices.folder, "folder of the files, created if it is missing")
      .required();
  add_rotate_option(parser, options->choices.rotation,
                    "azimuth of x, degrees from north, that merged curves and tippers are rotated to");
  parser
      .add_option("--reduction", options->choices.reduction,
                  "curves of csv: 0 raw, 1 averaged, 2 merged (the default)")
      .in_range(0, 2);
  parser.add_flag("--rhoplus", options->with_rhoplus,
                  "csv: the best fit of any layered earth to ExHy and EyHx as well");
  add_rhoplus_inversion_options(parser, options->rhoplus);
  parser.add_option("--plot-link", options->choices.plot_link,
                    "geojson, kml: link of each station, with {line}, {station} and {name} in it; left out: "
                    "LINE.pdf where the folder has it");
  add_overwrite_flag(parser, "replace files that exist");
  return {parser, [options] { return run_export(*options); }};
}

}  // namespace Batch
