#include "batch/rhoplus_option.h"

namespace Batch {

void add_rhoplus_options(Parser& parser, Module_output::RhoplusSettings& settings) {
  parser.add_option("--root", settings.root_name, "first part of the file names")
      .checked([](const std::string& name) {
        return name.find_first_not_of(' ') == std::string::npos ? "You must specify an output root file name"
                                                                : "";
      })
      .shows_default();
  add_rhoplus_inversion_options(parser, settings);
  parser.add_switch_off("--include-empty", settings.exclude_data, "write frequencies with no data as well");
}

void add_rhoplus_inversion_options(Parser& parser, Module_output::RhoplusSettings& settings) {
  parser.add_option("--floor", settings.resistivity_error_floor, "minimum error of a resistivity, percent")
      .above_zero()
      .shows_default();
  parser.add_option("--phase-floor", settings.phase_error_floor, "minimum error of a phase, degrees")
      .above_zero()
      .shows_default();
  parser.add_option("--scale", settings.resistivity_scale, "factor on all resistivities")
      .above_zero()
      .shows_default();
  parser.add_option("--surface", settings.surface, "0 conducting, 1 insulating")
      .in_range(0, 1)
      .shows_default();
  parser.add_switch_off("--no-static", settings.apply_static, "leave static shift corrections out");
  parser.add_switch_off("--keep-negative-phase", settings.exclude_negative_phase,
                        "use phases of 0 or less as well");
  add_file_errors_flag(parser, settings);
}

void add_file_errors_flag(Parser& parser, Module_output::RhoplusSettings& settings) {
  parser.add_flag(
      "--file-errors", [&settings] { settings.use_file_errors = 1; },
      "raise errors to those of the files where these are larger");
}

}  // namespace Batch
