#include "exchange/export_entries.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "platform/settings_store/settings_store.h"
#include "tensor/rotated_readings.h"

namespace Module_exchange {

namespace {

constexpr const char* application = "Marrowgate";
constexpr const char* section = "Brenlox";
constexpr const char* folder_key = "ExportDirectory";

/// The one of the main window, if the survey has it.
template <class Value>
Value current_or_first(const std::vector<Value>& listed, const Value& current, Value none) {
  if (std::ranges::find(listed, current) != listed.end()) {
    return current;
  }
  return listed.empty() ? none : listed.front();
}

void begin_survey(const ExportLists& lists, ExportEntries& entries) {
  const SessionState& state = session();
  entries.survey = state.database_file;
  entries.reference_type = current_or_first(lists.reference_types, state.current_reference_type, 0);
  entries.dipole = current_or_first(lists.dipoles, state.current_dipole, 0.0F);
  entries.lines.clear();
}

std::filesystem::path whole_path(std::string_view typed) {
  const std::filesystem::path survey_folder = Module_util::directory_of(session().database_file);
  return survey_folder / std::filesystem::path(trimmed(typed));  // one that begins at the root stays
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
  if (entries.survey != session().database_file) {
    begin_survey(lists, entries);
  }
  std::erase_if(entries.lines, [&](const std::string& line) {  // a removed or renamed one
    return std::ranges::find(lists.lines, line) == lists.lines.end();
  });
  const std::string& current = session().current_line;
  if (entries.lines.empty() && std::ranges::find(lists.lines, current) != lists.lines.end()) {
    entries.lines.push_back(current);
  }
  if (trimmed(entries.folder).empty()) {
    entries.folder = settings_store().value(application, section, folder_key, "");
    std::error_code ignored;
    if (!std::filesystem::is_directory(entries.folder, ignored)) {
      entries.folder = Module_util::directory_of(session().database_file);
    }
  }
}

void keep_export_folder(const ExportEntries& entries) {
  settings_store().set_value(application, section, folder_key, whole_path(entries.folder).string());
}

std::string fault_of_rotation(const ExportEntries& entries) {
  const bool asked = entries.rotate && takes_rotation(entries);
  return asked && !Module_tensor::is_rotation_azimuth(Module_tensor::azimuth_of(entries.rotation))
             ? "A number from -180 to 360"
             : std::string();
}

std::string fault_of_folder(const ExportEntries& entries) {
  if (trimmed(entries.folder).empty()) {
    return "A folder for the files must be chosen";
  }
  std::error_code ignored;
  const std::filesystem::path folder = whole_path(entries.folder);
  return std::filesystem::exists(folder, ignored) && !std::filesystem::is_directory(folder, ignored)
             ? "This is a file, not a folder"
             : std::string();
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
  choices.folder = trimmed(entries.folder).empty() ? std::string() : whole_path(entries.folder).string();
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
