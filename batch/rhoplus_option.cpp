#include "batch/rhoplus_option.h"

#include <limits>

namespace Batch {

void add_rhoplus_options(CLI::App& parser, Module_output::RhoplusSettings& settings) {
  const CLI::Range above_zero(std::numeric_limits<float>::min(), std::numeric_limits<float>::max());
  parser.add_option("--root", settings.root_name, "first part of the file names")
      ->check([](const std::string& name) {
        return name.find_first_not_of(' ') == std::string::npos ? "You must specify an output root file name"
                                                                : "";
      })
      ->capture_default_str();
  parser.add_option("--floor", settings.resistivity_error_floor, "minimum error of a resistivity, percent")
      ->check(above_zero)
      ->capture_default_str();
  parser.add_option("--phase-floor", settings.phase_error_floor, "minimum error of a phase, degrees")
      ->check(above_zero)
      ->capture_default_str();
  parser.add_option("--scale", settings.resistivity_scale, "factor on all resistivities")
      ->check(above_zero)
      ->capture_default_str();
  parser.add_option("--surface", settings.surface, "0 conducting, 1 insulating")
      ->check(CLI::Range(0, 1))
      ->capture_default_str();
  const auto clears = [](std::int32_t& choice) { return [&choice](std::int64_t) { choice = 0; }; };
  parser.add_flag("--include-empty", clears(settings.exclude_data), "write frequencies with no data as well");
  parser.add_flag("--no-static", clears(settings.apply_static), "leave static shift corrections out");
  parser.add_flag("--keep-negative-phase", clears(settings.exclude_negative_phase),
                  "use phases of 0 or less as well");
}

}  // namespace Batch
