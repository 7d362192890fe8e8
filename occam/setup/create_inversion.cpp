#include "occam/setup/create_inversion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <optional>

#include "core/calendar.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/sites.h"
#include "database/survey_database.h"
#include "formats/occam/iteration_file.h"
#include "formats/occam/mesh_file.h"
#include "occam/inversion/run_inversion.h"
#include "occam/setup/earlier_run.h"
#include "occam/setup/line_data.h"
#include "occam/setup/mesh_design.h"
#include "occam/setup/run_files.h"
#include "occam/setup/site_names.h"
#include "occam/setup/station_positions.h"
#include "output/zonge.h"
#include "platform/files/safe_files.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"
#include "reduction/each_item.h"

namespace fs = std::filesystem;

namespace Module_occam {

using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::WorkProgress;
using Module_database::LineSelection;
using Module_database::ReadingKey;
using Module_output::RhoplusSettings;
using Module_output::RhoplusTables;

namespace {

constexpr const char* too_few_stations =
    "There are not enough stations for the current line to perform a 2D inversion";

std::vector<double> stations_of(const std::string& line) {
  std::vector<double> stations;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM StationsTable WHERE SurveyLine = '" + line + "' ORDER BY Station");
  for (; !rows.eof(); rows.move_next()) {
    stations.push_back(rows.get_double("Station"));
  }
  return stations;
}

/// The stations of a line where the inversion has them. @return none after a message
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

void end_step(const StationSteps& steps) {
  if (steps.step_done) {
    steps.step_done();
  }
}

/// The rows of one station, with its fit if errors depend on it. @return 0, or -1 after a message
int load_station(const ReadingKey& key, const Frequencies& frequencies, const RhoplusSettings& settings,
                 const InversionInputs& inputs, const StationSteps& steps, RhoplusTables& tables) {
  Module_database::StoredReading merged;
  if (Module_averaged_data::get_reduced_reading(Module_database::reduction_merged,
                                                Module_averaged_data::AllowRaw::yes, key, frequencies,
                                                merged) != 0) {
    return -1;
  }
  RhoplusSettings as_before = settings;  // the fit, and the errors that those of the files may only raise
  as_before.use_file_errors = 0;
  tables = Module_output::rhoplus_tables(merged, frequencies, as_before);
  end_step(steps);
  if (inputs.use_rhoplus_error && !tables.data.empty()) {
    steps.fit_station(as_before, tables);
    end_step(steps);
  }
  if (settings.use_file_errors != 0) {
    tables.file_errors = Module_output::rhoplus_tables(merged, frequencies, settings).file_errors;
  }
  return 0;
}

/// Collects the data of all stations of the line.
Outcome form_data(const LineSelection& line, const std::vector<PositionedStation>& stations,
                  const Frequencies& frequencies, const InversionInputs& inputs,
                  const InversionChoices& choices, const RhoplusSettings& rhoplus, const StationSteps& steps,
                  LineData& data) {
  RhoplusSettings settings = rhoplus;
  settings.apply_static = inputs.apply_static ? 1 : 0;
  const ErrorRule rule{choices.res_error_floor, choices.phase_error_floor, inputs.use_standard_error,
                       inputs.use_rhoplus_error};
  data.frequency_rows.assign(frequencies.count(), 0);
  WorkProgress progress("Reading the stations of line " + line.line, stations.size());
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    const PositionedStation& station = stations[index];
    if (steps.show_station) {
      steps.show_station(station.place_in_line);
    }
    end_step(steps);
    if (!is_within_limits(station.station, choices)) {
      return 0;
    }
    RhoplusTables tables;
    if (load_station(line.at(station.station), frequencies, settings, inputs, steps, tables) != 0) {
      return -1;
    }
    if (!tables.data.empty()) {
      add_station(data, station, tables, line.data_type == "EyHx", rule);
    }
    return 0;
  });
  return outcome == Outcome::finished && user_interface().stop_requested() ? Outcome::stopped : outcome;
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
         " are at the same place along the line, and an inversion takes one of them. Switch the other one "
         "off "
         "(Use Data)";
}

/// Why the data are not those of an inversion; empty if they are.
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

/// "21-November-2026"
std::string start_date() {
  static constexpr std::array<const char*, 12> months{"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
  const std::chrono::year_month_day date = today();
  return format_number(static_cast<int>(static_cast<unsigned>(date.day())), "00") + "-" +
         months.at(static_cast<unsigned>(date.month()) - 1) + "-" +
         format_number(static_cast<int>(date.year()), "0");
}

/// For a text that has one line of a file to itself.
std::string on_one_line(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return text;
}

std::string name_of(const std::string& entry) { return std::string(trimmed(entry)); }

/// All that is written.
struct RunSet {
  OccamMesh mesh;
  double binding_offset = 0.0;
  std::vector<LayerLines> layers;
  StartFile start;
  DataFile data;
};

/// What the sites of stations are called.
std::vector<InversionSite> sites_of(const std::string& line, const std::vector<double>& stations) {
  std::vector<InversionSite> sites;
  for (const double station : stations) {
    const std::optional<Module_database::Site> site = Module_database::find_site(line, station);
    sites.push_back({station, site ? shown_name(*site) : std::string()});
  }
  return sites;
}

RunSet design_run(const std::string& line, const InversionInputs& inputs, const InversionChoices& choices,
                  LineData&& data, std::vector<float>&& frequencies) {
  RunSet run;
  const MeshColumns columns = mesh_columns(horizontal_nodes(data.site_positions, choices.block_width));
  const MeshRows rows = mesh_rows(layer_count(choices), choices.layers_per_decade, choices.top_layer);
  run.mesh.node_widths = columns.widths;
  run.mesh.node_heights = rows.heights;
  run.binding_offset = static_cast<double>(data.site_positions.front()) - columns.binding_distance;
  run.layers = merge_blocks(columns, rows, choices.doubling_threshold);
  const std::string description = on_one_line(inputs.description);
  run.start = {description,
               name_of(inputs.model_file),
               name_of(inputs.data_file),
               start_date(),
               inputs.max_iterations,
               inputs.target_RMS,
               block_count(run.layers),
               std::log10(choices.initial_res)};
  run.data = {description, std::move(data.site_positions), std::move(frequencies), std::move(data.rows),
              names_in_data_file(sites_of(line, data.site_stations))};
  return run;
}

/// Writes all files, or none.
void write_run(const RunSet& run, const fs::path& folder) {
  const std::string mesh = mesh_file_text(run.mesh, MeshCodes::all_free);
  std::vector<safe_files::NewFile> files{
      {folder / "mesh", mesh},
      {folder / run.start.model_file, model_file_text(run.start.description, run.binding_offset, run.layers)},
      {folder / "startup", start_file_text(run.start)},
      {folder / run.start.data_file, data_file_text(run.data)}};
  // The model file names the mesh in capitals. Where that is another file, it is needed, too.
  if (folder_heeds_case(folder / run_script_name)) {
    files.push_back({folder / "MESH", mesh});
  }
  safe_files::write_together(files);
}

/// @return whether a run that the folder holds may move
bool may_replace(const EarlierRun& earlier, const fs::path& folder) {
  if (earlier.found() && is_being_inverted(folder)) {
    user_interface().show_message("An inversion is running in " + folder.string() +
                                  "; stop it first, or choose another folder");
    return false;
  }
  return !earlier.found() ||
         user_interface().ask_yes_no("Replace the inversion in " + folder.string() + "? It is kept in " +
                                     earlier.destination().filename().string() + ".");
}

/// Writes the run, after moving an earlier one away. Throws if that fails; everything is then as before.
/// @param scripts  none yet where there is an earlier run
void put_into_place(const RunSet& run, const fs::path& folder, EarlierRun& earlier,
                    std::optional<RunScripts>& scripts) {
  if (earlier.found()) {
    earlier.move_away();
    scripts.emplace(folder);
  }
  write_run(run, folder);
  scripts->keep();
  earlier.keep();
}

int create_run(const LineSelection& line, const InversionInputs& inputs, const InversionChoices& choices,
               const RhoplusSettings& rhoplus, const StationSteps& steps, CreatedInversion& created) {
  const auto stations = stations_at_positions(line.line, inputs.positions);
  if (!stations) {
    return -1;
  }
  const fs::path folder = run_directory(inputs);
  EarlierRun earlier(folder, {name_of(inputs.model_file), name_of(inputs.data_file)});
  if (!may_replace(earlier, folder)) {
    return -1;
  }
  const BusyPointer busy;
  const ScopedValue<bool> updating(session().updating_controls, true);
  const auto listed = Module_database::load_reference_frequencies(line.reference_type);
  if (!listed) {
    return -1;
  }
  std::optional<RunScripts> scripts;  // in a folder that holds a run they wait until that has moved
  if (!earlier.found()) {
    scripts.emplace(folder);
  }
  LineData data;
  const Outcome outcome = form_data(line, *stations, *listed, inputs, choices, rhoplus, steps, data);
  created.stopped = outcome == Outcome::stopped;
  if (created.stopped) {
    return 0;
  }
  if (outcome == Outcome::failed) {
    return -1;
  }
  if (scripts) {
    scripts->keep();
  }
  std::vector<float> frequencies = number_frequencies(data, listed->list);
  if (const std::string fault = fault_of(data, frequencies); !fault.empty()) {
    user_interface().show_message(fault);
    return -1;
  }
  const RunSet run = design_run(line.line, inputs, choices, std::move(data), std::move(frequencies));
  const std::string warning = size_warning(run.mesh.columns(), run.mesh.rows());
  if (!warning.empty()) {
    user_interface().show_message(warning);
  }
  put_into_place(run, folder, earlier, scripts);
  created.data_count = static_cast<int>(run.data.rows.size());
  created.directory = folder.string();
  created.earlier_run = earlier.found() ? earlier.destination().string() : "";
  return 0;
}

std::string completion_text(const CreatedInversion& created) {
  std::string text = "Output complete. Number of data written: " + format_number(created.data_count, "0") +
                     ". The files are in " + created.directory;
  if (!created.earlier_run.empty()) {
    text += ", the earlier inversion in " + created.earlier_run;
  }
  return text;
}

}  // namespace

LineSelection selected_line() {
  const SessionState& state = session();
  return {state.current_line, state.current_reference_type, state.current_data_type, state.current_dipole};
}

int check_line_for_inversion() {
  const SessionState& state = session();
  const auto stations = std::ranges::count(state.station_line, state.current_line);
  const char* missing = nullptr;
  if (stations < 2) {
    missing = too_few_stations;
  } else if (state.frequencies.enabled_count() < 2) {
    missing = "There is not enough enabled frequencies to perform a 2D inversion";
  }
  if (missing != nullptr) {
    user_interface().show_message(missing);
  }
  return missing == nullptr ? 0 : -1;
}

int create_inversion(const LineSelection& line, const InversionInputs& inputs, const RhoplusSettings& rhoplus,
                     const StationSteps& steps, CreatedInversion& created) {
  created = {};
  InversionChoices choices;
  if (check_inversion_inputs(inputs, choices) != 0) {
    return -1;
  }
  store_inversion_inputs(inputs);
  const int status = trap_errors(creating_failed,
                                 [&] { return create_run(line, inputs, choices, rhoplus, steps, created); });
  if (status == 0 && !created.stopped) {
    user_interface().show_message(completion_text(created));
  }
  return status;
}

}  // namespace Module_occam
