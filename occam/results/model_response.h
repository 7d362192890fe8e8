// model_response.h: the response of an iteration's model, computed here if the inversion left none.
#pragma once
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "formats/occam/occam_model.h"
#include "numerics/section/section.h"

namespace Module_occam {

/// The model with the resistivities of an iteration, on its mesh.
/// Throws std::runtime_error if codes or parameters don't fit.
/// @param parameters  log10 ohm-m, of the free blocks
numerics::section::Section response_section(
    const OccamModel& model, std::span<const double> parameters,
    numerics::section::ResistivityLimits limits = numerics::section::ResistivityLimits::cut);

/// Whether an inversion cuts resistivities, by the debug level of its iteration file.
numerics::section::ResistivityLimits limits_at(int debug_level);

struct ModelledData {
  std::vector<DataRow> rows;     // those of data types that have a meaning
  std::vector<double> modelled;  // for each of them, in its unit
  int other_rows = 0;            // of other data types, left out
};

/// The modelled values of observed data; a phase is at the turn that is nearest to the observed one, one turn
/// from -180..180 at most.
/// @param progress  called with the share done, 0 to 1; false stops
/// @return nothing if it was stopped. Throws std::exception for a model or sites that have no response, or
/// without any row to compute
std::optional<ModelledData> model_data(
    const OccamModel& model, std::span<const double> parameters, const ObservedData& data,
    const std::function<bool(double)>& progress,
    numerics::section::ResistivityLimits limits = numerics::section::ResistivityLimits::cut);

/// Datum, residual, modelled value and misfit of a row, as a response file lists them; the misfit is 0 for an
/// error of 0, and a negative error counts as its absolute value.
struct FitOfRow {
  double datum = 0.0;
  double residual = 0.0;
  double modelled = 0.0;
  double misfit = 0.0;
};
FitOfRow fit_of_row(const DataRow& row, double modelled);

/// The text of a response file with a header of its own, lines ending in CR LF.
std::string response_file_text(const ObservedData& data, const ModelledData& modelled);

}  // namespace Module_occam
