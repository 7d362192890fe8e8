#include "occam/setup/data_forming.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/user_interface.h"
#include "database/survey_database.h"
#include "output/rhoplus_data.h"
#include "platform/dao/text_literal.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"
#include "tensor/rotated_readings.h"

namespace Module_occam {

using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::WorkProgress;
using Module_database::LineSelection;
using Module_database::StoredReading;
using Module_output::RhoplusSettings;
using Module_output::RhoplusTables;

namespace {

std::vector<double> stations_of(const std::string& line) {
  std::vector<double> stations;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM StationsTable WHERE SurveyLine = " + dao::text_literal(line) + " ORDER BY Station");
  for (; !rows.eof(); rows.move_next()) {
    stations.push_back(rows.get_double("Station"));
  }
  return stations;
}

/// The merged curves of a station in the modes of the design. @return 0, or -1 after a message
int load_curves(const DataDesign& design, double station, std::vector<StoredReading>& curves) {
  for (const RunMode& mode : design.modes) {
    LineSelection of_mode = design.line;
    of_mode.data_type = mode.data_type;
    if (Module_averaged_data::get_reduced_reading(Module_database::reduction_merged,
                                                  Module_averaged_data::AllowRaw::yes, of_mode.at(station),
                                                  design.frequencies, curves.emplace_back()) != 0) {
      return -1;
    }
  }
  return 0;
}

/// The same in the axes of the strike. A station without a tensor has none, and is noted in the data.
int load_rotated_curves(const DataDesign& design, double station, std::vector<StoredReading>& curves,
                        LineData& data) {
  using namespace Module_tensor;
  LoadedStation loaded;
  if (load_station({design.line.line, design.line.reference_type, design.line.dipole}, station,
                   design.frequencies, loaded) != 0) {
    return -1;
  }
  if (!data.rotation.add(loaded)) {
    return 0;
  }
  for (const RunMode& mode : design.modes) {
    curves.push_back(rotated_reading(loaded.curves, loaded.tensor, impedance_type(mode.data_type).value(),
                                     strike_rotation(design.inputs)));
  }
  return 0;
}

/// The rows of one curve of a station, with its fit if errors depend on it.
RhoplusTables rows_of(const StoredReading& merged, const Frequencies& frequencies,
                      const RhoplusSettings& settings, bool use_rhoplus_error, const StationSteps& steps) {
  RhoplusSettings as_before = settings;  // the fit, and the errors that those of the files may only raise
  as_before.use_file_errors = 0;
  RhoplusTables tables = Module_output::rhoplus_tables(merged, frequencies, as_before);
  if (use_rhoplus_error && !tables.data.empty()) {
    steps.fit_station(as_before, tables);
  }
  if (settings.use_file_errors != 0) {
    tables.file_errors = Module_output::rhoplus_tables(merged, frequencies, settings).file_errors;
  }
  return tables;
}

ErrorRule rule_of(const DataDesign& design, const Mode& mode) {
  const bool te_floors = mode.resistivity == te_mode.resistivity;
  const InversionChoices& choices = design.choices;
  return {te_floors ? choices.te_res_error_floor : choices.res_error_floor,
          te_floors ? choices.te_phase_error_floor : choices.phase_error_floor,
          design.inputs.use_standard_error, design.inputs.use_rhoplus_error, error_form(design.inputs)};
}

/// Adds what a station has in each of the modes. @return 0, or -1 after a message
int form_station(const DataDesign& design, const PositionedStation& station, const StationSteps& steps,
                 LineData& data) {
  std::vector<StoredReading> merged;  // by mode
  const int status = design.inputs.rotate_to_strike
                         ? load_rotated_curves(design, station.station, merged, data)
                         : load_curves(design, station.station, merged);
  if (status != 0) {
    return -1;
  }
  std::vector<ModeCurve> curves;
  for (std::size_t index = 0; index < merged.size(); ++index) {
    RhoplusTables tables =
        rows_of(merged[index], design.frequencies, design.rhoplus, design.inputs.use_rhoplus_error, steps);
    if (!tables.data.empty()) {
      const Mode& mode = design.modes[index].mode;
      curves.push_back({mode, std::move(tables), rule_of(design, mode)});
    }
  }
  if (!curves.empty()) {
    add_station(data, station, curves);
  }
  return 0;
}

/// Why there is no mesh with a node for each of two stations; empty if there is.
std::string shared_position(const LineData& data) {
  const auto shared = std::ranges::adjacent_find(data.site_positions);
  if (shared == data.site_positions.end()) {
    return {};
  }
  const auto site = static_cast<std::size_t>(shared - data.site_positions.begin());
  return "Stations " + plain_text(data.site_stations[site]) + " and " +
         plain_text(data.site_stations[site + 1]) +
         " are at the same place along the line, and an inversion takes one of them. Switch the other "
         "one off (Use Data)";
}

}  // namespace

DataDesign::DataDesign(LineSelection selection, Frequencies listed, InversionInputs entries,
                       const InversionChoices& numbers, const RhoplusSettings& settings)
    : line(std::move(selection)),
      modes(run_modes(entries.modes, line.data_type, curve_axes(entries))),
      frequencies(std::move(listed)),
      inputs(std::move(entries)),
      choices(numbers),
      rhoplus(settings) {
  rhoplus.apply_static = inputs.apply_static ? 1 : 0;
}

std::optional<std::vector<PositionedStation>> stations_at_positions(const std::string& line,
                                                                    PositionSource positions) {
  const std::vector<double> stations = stations_of(line);
  if (positions == PositionSource::station_numbers) {
    return positions_by_number(stations);
  }
  const Module_projections::LineDistances distances = Module_projections::line_distances(line);
  if (!distances.known()) {
    user_interface().show_message(distances.refusal);
    return std::nullopt;
  }
  return positions_by_distance(stations, distances);
}

Outcome form_data(const DataDesign& design, const std::vector<PositionedStation>& stations,
                  const StationSteps& steps, LineData& data) {
  data.frequency_rows.assign(design.frequencies.count(), 0);
  WorkProgress progress("Reading the stations of line " + design.line.line, stations.size());
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    const PositionedStation& station = stations[index];
    if (steps.show_station) {
      steps.show_station(station.place_in_line);
    }
    return is_within_limits(station.station, design.choices) ? form_station(design, station, steps, data) : 0;
  });
  return outcome == Outcome::finished && user_interface().stop_requested() ? Outcome::stopped : outcome;
}

std::string missing_mode(const DataDesign& design, std::span<const ModeTotal> totals) {
  std::string missing;
  for (const ModeTotal& total : totals) {
    if (total.rows() == 0) {
      missing += std::string(missing.empty() ? "no " : " and no ") + total.mode.mode.name + " data (" +
                 total.mode.data_type + ")";
    }
  }
  return design.inputs.modes != ModeChoice::both || missing.empty()
             ? std::string()
             : "An inversion of both modes needs TE and TM; line " + design.line.line + " has " + missing +
                   " in use for a dipole of " + plain_text(design.line.dipole) + " m";
}

std::string fault_of(const LineData& data, const std::vector<float>& frequencies) {
  if (data.site_positions.size() < min_stations) {
    return too_few_stations;
  }
  if (data.rows.size() < 2) {
    return "There is not enough data to perform a 2D inversion";
  }
  if (frequencies.empty()) {
    return "There are not enough valid frequencies for the current line to perform a 2D inversion";
  }
  return shared_position(data);
}

}  // namespace Module_occam
