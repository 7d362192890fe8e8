#include "exchange/export_entries.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"
#include "tensor/rotated_readings.h"

namespace Module_exchange {

namespace {

constexpr const char* folder_key = "ExportDirectory";

template <class Value>
bool has(const std::vector<Value>& listed, const Value& value) {
  return std::ranges::find(listed, value) != listed.end();
}

/// What the survey has no longer, or had not yet, gives way to that of the main window, if the survey has it.
template <class Value>
void keep_listed(const std::vector<Value>& listed, const Value& current, Value& chosen) {
  if (has(listed, chosen)) {
    return;
  }
  chosen = has(listed, current) ? current : listed.empty() ? Value{} : listed.front();
}

void begin_survey(ExportEntries& entries) {
  const SessionState& state = session();
  entries.survey = state.database_file;
  entries.reference_type = state.current_reference_type;
  entries.dipole = state.current_dipole;
  entries.lines.clear();
}

}  // namespace

void ExportEntries::propose_strike(std::optional<double> strike) {
  rotation = format_number(strike.value_or(0.0), "0.0");
  rotate = rotate && strike.has_value();
}

bool takes_rotation(const ExportEntries& entries) {
  return !takes_plot_link(entries) &&
         (!takes_csv_choices(entries) || entries.reduction == Module_database::reduction_merged);
}

bool takes_csv_choices(const ExportEntries& entries) { return entries.format == ExportFormat::csv; }

bool takes_plot_link(const ExportEntries& entries) {
  return entries.format == ExportFormat::geojson || entries.format == ExportFormat::kml;
}

std::string_view purpose_of(ExportFormat format) {
  switch (format) {
    case ExportFormat::edi:
      return "A file for each station, with merged impedances and tippers. Nearly all programs for "
             "transfer functions read it.";
    case ExportFormat::emtf_xml:
      return "A file for each station, with merged impedances, tippers and what is known of the site. "
             "Public archives keep this.";
    case ExportFormat::csv:
      return "Tables of each line with units in their headings, for spreadsheets and scripts: curves, "
             "tensors, results of Rho+.";
    case ExportFormat::geojson:
      return "One file with the stations as points, for QGIS and maps on the web.";
    case ExportFormat::kml:
      return "One file with the stations as placemarks, for globes and QGIS.";
  }
  return {};
}

void begin_export(const ExportLists& lists, ExportEntries& entries) {
  const SessionState& state = session();
  if (entries.survey != state.database_file) {
    begin_survey(entries);
  }
  if (lists.lines.empty()) {
    entries.survey.clear();  // of an empty survey nothing was chosen that an import would have to keep
  }
  keep_listed(lists.reference_types, state.current_reference_type, entries.reference_type);
  keep_listed(lists.dipoles, state.current_dipole, entries.dipole);
  std::erase_if(entries.lines, [&](const std::string& line) { return !has(lists.lines, line); });
  if (entries.lines.empty() && has(lists.lines, state.current_line)) {
    entries.lines.push_back(state.current_line);
  }
  if (trimmed(entries.folder).empty()) {
    entries.folder = settings_store().value(settings_application, settings_section, folder_key, "");
    std::error_code ignored;
    if (!std::filesystem::is_directory(entries.folder, ignored)) {
      entries.folder = Module_util::directory_of(session().database_file);
    }
  }
}

void keep_export_folder(const ExportEntries& entries) {
  settings_store().set_value(settings_application, settings_section, folder_key, whole_folder(entries));
}

std::string whole_folder(const ExportEntries& entries) {
  const std::string typed(trimmed(entries.folder));
  if (typed.empty()) {
    return {};
  }
  const std::filesystem::path survey_folder = Module_util::directory_of(session().database_file);
  return (survey_folder / typed).string();  // one that begins at the root stays
}

std::string fault_of_rotation(const ExportEntries& entries) {
  const bool asked = entries.rotate && takes_rotation(entries);
  return asked && !Module_tensor::is_rotation_azimuth(Module_tensor::azimuth_of(entries.rotation))
             ? "The azimuth of x must be from -180 to 360 degrees"
             : std::string();
}

std::string fault_of_folder(const ExportEntries& entries) {
  const std::filesystem::path folder = whole_folder(entries);
  if (folder.empty()) {
    return "A folder for the files must be chosen";
  }
  std::error_code ignored;
  return std::filesystem::exists(folder, ignored) && !std::filesystem::is_directory(folder, ignored)
             ? "This is a file, not a folder"
             : std::string();
}

std::string hint_of_folder(const ExportEntries& entries) {
  if (!fault_of_folder(entries).empty()) {
    return {};
  }
  const std::string folder = whole_folder(entries);
  std::error_code ignored;
  const bool is_there = std::filesystem::exists(folder, ignored);
  const bool is_whole = std::filesystem::path(trimmed(entries.folder)).is_absolute();
  std::string path = is_whole ? std::string() : std::filesystem::path(folder).lexically_normal().string();
  if (is_there) {
    return path;
  }
  return path.empty() ? "Will be made" : "Will be made: " + path;
}

ExportChoices choices_of(const ExportLists& lists, const ExportEntries& entries,
                         const Module_output::RhoplusSettings& rhoplus) {
  ExportChoices choices;
  choices.format = entries.format;
  for (const std::string& line : entries.lines) {
    if (auto kind = kind_of_line(lists, line, entries.reference_type, entries.dipole)) {
      choices.lines.push_back(*std::move(kind));
    }
  }
  choices.folder = whole_folder(entries);
  if (entries.rotate && takes_rotation(entries)) {
    choices.rotation = Module_tensor::azimuth_of(entries.rotation);
  }
  if (takes_csv_choices(entries)) {
    choices.reduction = entries.reduction;
    if (entries.rhoplus) {
      choices.rhoplus = rhoplus;
    }
  }
  if (takes_plot_link(entries)) {
    choices.plot_link = trimmed(entries.plot_link);
  }
  return choices;
}

bool have_same_files(const ExportChoices& a, const ExportChoices& b) {
  return a.format == b.format && a.lines == b.lines && a.rotation == b.rotation &&
         a.reduction == b.reduction && a.rhoplus.has_value() == b.rhoplus.has_value();
}

}  // namespace Module_exchange
