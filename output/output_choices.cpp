#include "output/output_choices.h"

#include <filesystem>

#include "core/finished_work.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "output/rhoplus.h"
#include "output/zonge_files.h"

namespace Module_output {

using Module_database::LineSelection;

namespace {

constexpr const char* output_completed = "Data output completed. ";

// Asks for the file to write. Empty if the user cancels.
std::string ask_for_file(const LineSelection& selection, const std::string& folder) {
  FileDialogRequest request;
  request.title = "Enter Name Output Data File";
  request.filter = "Output data File (*.avg)|*.avg|All files (*.*)|*.*";
  request.default_extension = "*.avg";
  request.directory = folder;
  request.suggested_name = zonge_file_name(selection);
  const std::string path = user_interface().select_file_to_create(request);
  return !path.empty() && may_write_zonge(zonge_paths(path)) ? path : std::string();
}

/// Components of the tipper have no resistivity.
std::vector<std::string> data_types_of_curves() {
  std::vector<std::string> types;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT DataType FROM ReadingsDataTable WHERE " +
      std::string(Module_database::no_tipper_criterion) + " ORDER BY DataType");
  Module_database::for_each_sound_row(
      rows, [&](const dao::Recordset& row) { types.push_back(row.get_text("DataType")); });
  return types;
}

/// Of choices that miss nothing.
LineSelection chosen_selection(const OutputLists& lists, const OutputChoices& choices) {
  return {lists.lines.at(static_cast<std::size_t>(choices.line_index)), choices.reference_index,
          choices.data_type.empty() ? session().current_data_type : choices.data_type,
          lists.dipoles.at(static_cast<std::size_t>(choices.dipole_index))};
}

const char* missing_choice(const OutputChoices& choices) {
  if (choices.line_index < 0) {
    return "Please select which line to output";
  }
  if (choices.reference_index < 0) {
    return "Please select which data type to output";
  }
  return choices.dipole_index < 0 ? "Please select which dipole to output" : nullptr;
}

const char* missing_setting(const RhoplusSettings& settings) {
  if (trimmed(settings.root_name).empty()) {
    return "You must specify an output root file name";
  }
  if (settings.surface < 0) {
    return "Please select a surface boundary condition";
  }
  // Negated so that a floor that is not a number counts as missing.
  if (!(settings.resistivity_error_floor > 0.0F)) {
    return "The resistivity error floor is not valid";
  }
  if (!(settings.phase_error_floor > 0.0F)) {
    return "The phase error flor is not valid";
  }
  return settings.resistivity_scale > 0.0F ? nullptr : "The resistivity scale is not valid";
}

}  // namespace

int read_output_lists(OutputLists& lists) {
  lists = {};
  return trap_errors("An error occurred while reading the lines: ", [&] {
    lists.lines = Module_database::listed_lines();
    lists.dipoles = Module_database::listed_dipoles();
    lists.reference_types = Module_database::listed_reference_types();
    lists.data_types = data_types_of_curves();
    if (lists.lines.empty() || lists.dipoles.empty()) {
      user_interface().show_message("There is no data in the database");
      return -1;
    }
    return 0;
  });
}

std::string rotated_data_type(const std::string& data_type) {
  if (data_type == "ExHy") {
    return data_type + ", electric field along the strike (TE)";
  }
  return data_type == "EyHx" ? data_type + ", electric field across the strike (TM)" : data_type;
}

int write_chosen_rhoplus(const OutputLists& lists, const OutputChoices& choices,
                         const RhoplusSettings& settings, const std::string& sub_folder,
                         const std::function<void(int)>& show_row_count) {
  const char* missing = missing_choice(choices);
  if (missing == nullptr) {
    missing = missing_setting(settings);
  }
  if (missing != nullptr) {
    user_interface().show_message(missing);
    return -1;
  }
  const LineSelection selection = chosen_selection(lists, choices);
  const std::filesystem::path folder = std::filesystem::path(choices.folder) / trimmed(sub_folder);
  RhoplusCounts counts;
  if (output_rhoplus(selection, folder.string(), settings, show_row_count, counts, choices.strike) != 0) {
    return -1;
  }
  const std::string summary = rhoplus_summary(counts, settings, folder.string());
  user_interface().show_message((counts.stopped ? "Stopped. " : output_completed) + summary);
  Module_Brenlox::tell_finished((counts.stopped ? "Stopped: " : "Rhoplus: ") + summary, folder.string());
  return 0;
}

int write_chosen_zonge(const OutputLists& lists, const OutputChoices& choices,
                       const std::function<void(int)>& show_row_count) {
  if (const char* const missing = missing_choice(choices)) {
    user_interface().show_message(missing);
    return -1;
  }
  const LineSelection selection = chosen_selection(lists, choices);
  const std::string path = ask_for_file(selection, choices.folder);
  if (path.empty()) {
    return 0;
  }
  int row_count = nothing_written;
  int status = -1;
  {
    const BusyPointer busy;
    status = output_zonge(selection, path, show_row_count, row_count);
  }
  const bool written = status == 0 && row_count != nothing_written;
  if (!written && show_row_count) {
    show_row_count(0);  // rows of a set that came to nothing
  }
  if (status == 0) {
    const std::string summary = written ? zonge_summary(row_count, zonge_paths(path)) : std::string();
    user_interface().show_message(written ? output_completed + summary : "Stopped; nothing was written");
    if (written) {
      Module_Brenlox::tell_finished("Zonge: " + summary, path);
    }
  }
  return status;
}

}  // namespace Module_output
