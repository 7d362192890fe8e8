// inversion.h: one inversion from data to sheets, in double precision and without a table or file.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "numerics/rhoplus/best_fit.h"
#include "numerics/rhoplus/sheets.h"
#include "numerics/rhoplus/work_limit.h"

namespace numerics::rhoplus {

/// What was measured at one frequency.
struct RhoplusDatum {
  double frequency = 0.0;          // Hz
  double resistivity = 0.0;        // ohm-m
  double resistivity_error = 0.0;  // ohm-m
  double phase = 0.0;              // degrees
  double phase_error = 0.0;        // degrees
  bool use_resistivity = false;
  bool use_phase = false;
};

/// Response and residuals of one row; NaN where there is none.
struct RhoplusPrediction {
  double resistivity = 0.0;           // ohm-m
  double phase = 0.0;                 // degrees, 0 to 90
  double resistivity_residual = 0.0;  // ln(model/observed) over the relative error; NaN if unused
  double phase_residual = 0.0;        // (model - observed) over the error; NaN if unused
};

struct RhoplusInversion {
  bool ran = false;       // false: there was nothing to fit
  int resistivities = 0;  // used
  int phases = 0;         // used
  BestFit fit;
  SheetModel sheets;
  std::vector<RhoplusPrediction> rows;  // as the data
  bool level_is_arbitrary = false;      // phases say nothing about the level of the resistivity
  int dropped_sheets = 0;               // to keep to max_rows
  double sheet_error = 0.0;             // largest difference of ln c of the sheets and of the fit
  bool limit_met = false;               // of iterations: the fit is the best by then
  std::vector<std::string> remarks;     // sentences: what could not be used, and why

  [[nodiscard]] int used_values() const { return resistivities + phases; }
};

/// @param max_rows   of the model table: sheets and perfect conductor
/// @param conducting the first sheet lies at depth 0: above a thousand times the highest used frequency c is
///                   that of a sheet, which changes no phase by more than 0.06 degrees
RhoplusInversion invert(std::span<const RhoplusDatum> data, bool conducting, std::size_t max_rows,
                        const InversionLimits& limits = {});

}  // namespace numerics::rhoplus
