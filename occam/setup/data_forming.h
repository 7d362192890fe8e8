// data_forming.h: goes through the stations of a line and collects the data of an inversion.
#pragma once
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "database/reading.h"
#include "occam/setup/inversion_inputs.h"
#include "occam/setup/line_data.h"
#include "occam/setup/mode_counts.h"
#include "occam/setup/run_modes.h"
#include "occam/setup/station_fit.h"
#include "occam/setup/station_positions.h"
#include "output/rhoplus_settings.h"
#include "reduction/each_item.h"

namespace Module_occam {

inline constexpr const char* too_few_stations =
    "There are not enough stations for the current line to perform a 2D inversion";

/// What a caller adds to the work at each station. The first may be empty.
struct StationSteps {
  std::function<void(int place_in_line)> show_station;  // place from 1

  /// Puts a one-dimensional fit into the rows of a station, of one mode.
  std::function<void(const Module_output::RhoplusSettings&, Module_output::RhoplusTables&)> fit_station =
      fit_with_rhoplus;
};

/// What the data of a line are made from.
struct DataDesign {
  Module_database::LineSelection line;
  std::vector<RunMode> modes;
  Frequencies frequencies;
  InversionInputs inputs;
  InversionChoices choices;
  Module_output::RhoplusSettings rhoplus;  // with the inputs' choice of static factors

  DataDesign(Module_database::LineSelection selection, Frequencies listed, InversionInputs entries,
             const InversionChoices& numbers, const Module_output::RhoplusSettings& settings);
};

/// The stations of a line where the inversion has them. @return none after a message
std::optional<std::vector<PositionedStation>> stations_at_positions(const std::string& line,
                                                                    PositionSource positions);

/// Adds the data of the stations within the limits. @return `failed` after a message
Module_averaged_data::Outcome form_data(const DataDesign& design,
                                        const std::vector<PositionedStation>& stations,
                                        const StationSteps& steps, LineData& data);

/// Which of both modes has no data, in a sentence; empty if each has some, or if only one was asked for.
/// @param totals  of the line's data in the modes of the design
std::string missing_mode(const DataDesign& design, std::span<const ModeTotal> totals);

/// Why the data are not those of an inversion; empty if they are.
/// @param frequencies  that have rows
std::string fault_of(const LineData& data, const std::vector<float>& frequencies);

}  // namespace Module_occam
