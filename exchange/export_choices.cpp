#include "exchange/export_choices.h"

#include "core/text_fields.h"
#include "tensor/rotated_readings.h"

namespace Module_exchange {

namespace {

bool is_known_reduction(std::int32_t reduction) {
  return reduction >= Module_database::reduction_raw && reduction <= Module_database::reduction_merged;
}

}  // namespace

std::string fault_of(const ExportChoices& choices) {
  const bool is_csv = choices.format == ExportFormat::csv;
  const bool is_merged = choices.reduction == Module_database::reduction_merged;
  const bool has_curves = choices.format != ExportFormat::geojson && choices.format != ExportFormat::kml;
  if (choices.lines.empty()) {
    return "There is no line to write";
  }
  if (trimmed(choices.folder).empty()) {
    return "A folder for the files must be chosen";
  }
  if (!is_known_reduction(choices.reduction)) {
    return "Curves are raw, averaged or merged (0, 1 or 2)";
  }
  if (!is_merged && !is_csv) {
    return "Raw and averaged curves are written to CSV only";
  }
  if (choices.rhoplus && !is_csv) {
    return "Results of Rho+ are written to CSV only";
  }
  if (choices.rotation && !has_curves) {
    return "Files of places have nothing to rotate";
  }
  if (choices.rotation && !Module_tensor::is_rotation_azimuth(*choices.rotation)) {
    return Module_tensor::bad_azimuth;
  }
  if (choices.rotation && !is_merged) {
    return "Only merged curves can be rotated";
  }
  return {};
}

}  // namespace Module_exchange
