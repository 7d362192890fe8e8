// mode_counts.h: how many data an inversion has in each of its modes, before it is created and afterwards.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "database/reading.h"
#include "occam/setup/inversion_inputs.h"
#include "occam/setup/line_data.h"
#include "occam/setup/run_modes.h"
#include "output/rhoplus_settings.h"
#include "tensor/line_tensors.h"

namespace Module_occam {

struct StationCount {
  double station = 0.0;
  int resistivities = 0;  // above 0
  int phases = 0;
};

/// What a line could give in a mode.
struct ModeCount {
  RunMode mode;
  std::vector<StationCount> stations;  // ascending
};

/// What is taken in a mode.
struct ModeTotal {
  RunMode mode;
  int stations = 0;
  int resistivities = 0;
  int phases = 0;

  [[nodiscard]] int rows() const { return resistivities + phases; }
};

/// Counts what the stored merged curves of a line give in each mode. Curves that have yet to be merged from
/// their readings aren't counted.
/// @param rhoplus  the user's settings: which phases are used
/// Throws dao::Error.
std::vector<ModeCount> count_data(const Module_database::LineSelection& line, ModeChoice choice,
                                  const Module_output::RhoplusSettings& rhoplus);

/// The same of a line's curves as a run of these entries rotates them to the strike; the stations that have
/// a tensor. Throws dao::Error.
std::vector<ModeCount> count_rotated_data(const Module_tensor::LineTensors& tensors,
                                          const std::string& current_type, const InversionInputs& inputs,
                                          const Module_output::RhoplusSettings& rhoplus);

/// Of the stations within the limits.
std::vector<ModeTotal> mode_totals(std::span<const ModeCount> counts, const InversionChoices& choices);

/// Of the rows of a run.
std::vector<ModeTotal> mode_totals(std::span<const RunMode> of_run, const LineData& data);

/// "TE 30 data at 10 stations, no phases, TM 120 data at 20 stations"; "TE none (EyHx)" of a mode without
/// any.
std::string totals_text(std::span<const ModeTotal> totals);

}  // namespace Module_occam
