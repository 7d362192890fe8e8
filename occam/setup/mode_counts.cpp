#include "occam/setup/mode_counts.h"

#include <optional>
#include <set>

#include "core/number_text.h"
#include "database/frequency_store.h"
#include "database/survey_database.h"
#include "output/rhoplus_data.h"
#include "platform/dao/text_literal.h"
#include "reduction/data_sets/curve_parts.h"
#include "reduction/derived_rows.h"
#include "tensor/rotated_readings.h"

namespace Module_occam {

namespace {

StationCount count_values(double station, const Module_output::RhoplusTables& tables) {
  StationCount count{station};
  for (const auto& row : tables.data) {
    count.resistivities += row.use_resistivity > 0.0F ? 1 : 0;
    count.phases += row.use_phase > 0.0F ? 1 : 0;
  }
  return count;
}

std::vector<StationCount> count_stations(const Module_database::LineSelection& line,
                                         const Frequencies& frequencies,
                                         const Module_output::RhoplusSettings& rhoplus) {
  std::vector<StationCount> counts;
  // A curve computed here, whose FileID is below 0, comes before one of a file, as it does in a run.
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE LineNumber = " + dao::text_literal(line.line) + " AND " +
      Module_averaged_data::kind_criteria(Module_averaged_data::reduction_merged, line.at(0.0)) +
      " AND SampleRate = 0 ORDER BY Station,FileID");
  std::optional<double> last_station;
  for (; !rows.eof(); rows.move_next()) {
    const double station = rows.get_double("Station");
    if (station == last_station) {
      continue;
    }
    last_station = station;
    const StationCount count = count_values(
        station, Module_output::rhoplus_tables(Module_database::read_reading(rows), frequencies, rhoplus));
    if (count.resistivities > 0) {
      counts.push_back(count);
    }
  }
  return counts;
}

}  // namespace

std::vector<ModeCount> count_data(const Module_database::LineSelection& line, ModeChoice choice,
                                  const Module_output::RhoplusSettings& rhoplus) {
  std::vector<ModeCount> counts;
  const auto listed = Module_database::load_reference_frequencies(line.reference_type);
  if (!listed) {
    return counts;
  }
  for (const RunMode& mode : run_modes(choice, line.data_type)) {
    Module_database::LineSelection of_mode = line;
    of_mode.data_type = mode.data_type;
    counts.push_back({mode, count_stations(of_mode, *listed, rhoplus)});
  }
  return counts;
}

std::vector<ModeCount> count_rotated_data(const Module_tensor::LineTensors& tensors,
                                          const std::string& current_type, const InversionInputs& inputs,
                                          const Module_output::RhoplusSettings& rhoplus) {
  std::vector<ModeCount> counts;
  const auto listed = Module_database::load_reference_frequencies(tensors.curves.choice.reference_type);
  if (!listed) {
    return counts;
  }
  const Module_tensor::Rotation rotation = strike_rotation(inputs);
  for (const RunMode& mode : run_modes(inputs.modes, current_type, CurveAxes::strike)) {
    ModeCount& count = counts.emplace_back(ModeCount{mode, {}});
    const Module_tensor::CurveType type = Module_tensor::impedance_type(mode.data_type).value();
    for (std::size_t index = 0; index < tensors.stations.size(); ++index) {
      const Module_tensor::StationCurves& curves = tensors.curves.stations[index];
      const StationCount values = count_values(
          curves.station,
          Module_output::rhoplus_tables(rotated_reading(curves, tensors.stations[index], type, rotation),
                                        *listed, rhoplus));
      if (values.resistivities > 0) {
        count.stations.push_back(values);
      }
    }
  }
  return counts;
}

std::vector<ModeTotal> mode_totals(std::span<const ModeCount> counts, const InversionChoices& choices) {
  std::vector<ModeTotal> totals;
  for (const ModeCount& count : counts) {
    ModeTotal& total = totals.emplace_back(ModeTotal{count.mode});
    for (const StationCount& station : count.stations) {
      if (is_within_limits(station.station, choices)) {
        ++total.stations;
        total.resistivities += station.resistivities;
        total.phases += station.phases;
      }
    }
  }
  return totals;
}

std::vector<ModeTotal> mode_totals(std::span<const RunMode> of_run, const LineData& data) {
  std::vector<ModeTotal> totals;
  for (const RunMode& mode : of_run) {
    ModeTotal& total = totals.emplace_back(ModeTotal{mode});
    std::set<int> sites;
    for (const DataRow& row : data.rows) {
      if (mode.mode.has(row.type)) {
        ++(row.type == mode.mode.phase ? total.phases : total.resistivities);
        sites.insert(row.site_number);
      }
    }
    total.stations = static_cast<int>(sites.size());
  }
  return totals;
}

std::string totals_text(std::span<const ModeTotal> totals) {
  std::string text;
  for (const ModeTotal& total : totals) {
    text += (text.empty() ? "" : ", ") + std::string(total.mode.mode.name);
    if (total.rows() == 0) {
      text += " none (" + total.mode.data_type + ")";
      continue;
    }
    text += " " + plain_text(total.rows()) + " data at " + plain_text(total.stations) +
            (total.stations == 1 ? " station" : " stations") + (total.phases == 0 ? ", no phases" : "");
  }
  return text;
}

}  // namespace Module_occam
