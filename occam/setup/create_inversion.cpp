#include "occam/setup/create_inversion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <optional>

#include "core/calendar.h"
#include "core/finished_work.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/sites.h"
#include "formats/occam/iteration_file.h"
#include "formats/occam/mesh_file.h"
#include "occam/inversion/run_inversion.h"
#include "occam/setup/earlier_run.h"
#include "occam/setup/line_data.h"
#include "occam/setup/mesh_design.h"
#include "occam/setup/run_files.h"
#include "occam/setup/site_names.h"
#include "platform/files/safe_files.h"
#include "reduction/unsupported_curves.h"

namespace fs = std::filesystem;

namespace Module_occam {

using Module_averaged_data::Outcome;
using Module_database::LineSelection;
using Module_output::RhoplusSettings;

namespace {

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

/// The title of the files, which says how the curves were rotated.
std::string description_of(const InversionInputs& inputs) {
  std::string description = on_one_line(inputs.description);
  if (!inputs.rotate_to_strike) {
    return description;
  }
  const std::string rotated = Module_tensor::rotation_text(*inputs.rotate_to_strike);
  return trimmed(description).empty() ? rotated : description + ", " + rotated;
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
  const std::string description = description_of(inputs);
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

/// A sentence and the stations that weren't rotated.
std::string with_left_out(const std::string& sentence, const CreatedInversion& created) {
  const std::string left_out = Module_tensor::left_out_text(created.rotation);
  return left_out.empty() ? sentence : sentence + ". " + left_out;
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

/// A rotated run takes all elements, any other those of its modes.
std::string unsupported_text(LineSelection line, const InversionInputs& inputs,
                             const std::vector<RunMode>& modes) {
  if (inputs.rotate_to_strike) {
    line.data_type.clear();
    return Module_averaged_data::unsupported_hint(line);
  }
  std::string text;
  for (const RunMode& mode : modes) {
    line.data_type = mode.data_type;
    const std::string hint = Module_averaged_data::unsupported_hint(line);
    text += (text.empty() || hint.empty() ? "" : "\n") + hint;
  }
  return text;
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
  const DataDesign design(line, *listed, inputs, choices, rhoplus);
  LineData data;
  const Outcome outcome = form_data(design, *stations, steps, data);
  created.stopped = outcome == Outcome::stopped;
  if (created.stopped) {
    return 0;
  }
  if (outcome == Outcome::failed) {
    return -1;
  }
  created.totals = mode_totals(design.modes, data);
  created.rotation = std::move(data.rotation);
  if (const std::string missing = missing_mode(design, created.totals); !missing.empty()) {
    user_interface().show_message(with_left_out(missing, created));
    return -1;
  }
  if (scripts) {
    scripts->keep();
  }
  std::vector<float> frequencies = number_frequencies(data, listed->list);
  if (const std::string fault = fault_of(data, frequencies); !fault.empty()) {
    user_interface().show_message(with_left_out(fault, created));
    return -1;
  }
  const RunSet run = design_run(line.line, inputs, choices, std::move(data), std::move(frequencies));
  const std::string warning = size_warning(run.mesh.columns(), run.mesh.rows());
  if (!warning.empty()) {
    user_interface().show_message(warning);
  }
  put_into_place(run, folder, earlier, scripts);
  created.unsupported = unsupported_text(line, inputs, design.modes);
  created.data_count = static_cast<int>(run.data.rows.size());
  created.directory = folder.string();
  created.earlier_run = earlier.found() ? earlier.destination().string() : "";
  return 0;
}

std::string completion_text(const CreatedInversion& created, const InversionInputs& inputs) {
  std::string text = "Output complete. Number of data written: " + format_number(created.data_count, "0") +
                     ". The files are in " + created.directory;
  if (!created.earlier_run.empty()) {
    text += ", the earlier inversion in " + created.earlier_run;
  }
  if (created.totals.size() > 1) {
    text += ". " + totals_text(created.totals);
  }
  if (inputs.rotate_to_strike) {
    text += ". The curves are " + Module_tensor::report_text(*inputs.rotate_to_strike, created.rotation);
  }
  if (!created.unsupported.empty()) {
    text += "\n" + created.unsupported;
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
  if (inputs.rotate_to_strike) {
    if (const std::string fault = rotation_fault(inputs.modes, line.data_type); !fault.empty()) {
      user_interface().show_message(fault);
      return -1;
    }
  }
  store_inversion_inputs(inputs);
  const int status = trap_errors(creating_failed,
                                 [&] { return create_run(line, inputs, choices, rhoplus, steps, created); });
  if (status == 0 && !created.stopped) {
    user_interface().show_message(completion_text(created, inputs));
    Module_Brenlox::tell_finished(
        "The Occam2D run of line " + line.line + " is written to " + created.directory, created.directory);
  }
  return status;
}

}  // namespace Module_occam
