#include "numerics/rhoplus/rhoplus.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <utility>

#include "numerics/rhoplus/chi_statistics.h"
#include "numerics/rhoplus/inversion.h"

namespace numerics::rhoplus {

namespace {

/// Into 32 bits: what is not a number is no_data, what is too large the largest there is.
float to_single(double value) {
  constexpr double largest = std::numeric_limits<float>::max();
  return std::isnan(value) ? no_data : static_cast<float>(std::clamp(value, -largest, largest));
}

RhoplusDatum datum_of(const RhoplusRow& row) {
  return {row.frequency,   row.resistivity,        row.resistivity_error, row.phase,
          row.phase_error, row.uses_resistivity(), row.uses_phase()};
}

std::vector<RhoplusLayer> layers_of(const SheetModel& model) {
  std::vector<RhoplusLayer> layers;
  const float largest_sheet = std::nextafter(perfect_conductor, 0.0F);
  for (const Sheet& sheet : model.sheets) {
    layers.push_back({to_single(sheet.depth), std::min(to_single(sheet.conductance), largest_sheet)});
  }
  if (std::isfinite(model.conductor_depth)) {
    layers.push_back({to_single(model.conductor_depth), perfect_conductor});
  }
  return layers;
}

/// Fills columns 8 and 9.
void put_response(const RhoplusInversion& inversion, std::span<RhoplusRow> data) {
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i].model_resistivity = to_single(inversion.rows[i].resistivity);
    data[i].model_phase = to_single(inversion.rows[i].phase);
  }
}

RhoplusRun summary_of(const RhoplusInversion& inversion) {
  RhoplusRun result;
  result.used_values = inversion.used_values();
  if (!inversion.ran) {
    result.status = rhoplus_no_usable_data;
    result.message = "There is nothing to invert: no value is used, or none can be.";
    return result;
  }
  result.status = rhoplus_ran;
  result.target_chi = to_single(expected_chi(result.used_values));
  result.achieved_chi = to_single(std::sqrt(inversion.fit.misfit2));
  result.optimality_gap = inversion.fit.gap;
  result.limit_met = inversion.limit_met;
  result.model = layers_of(inversion.sheets);
  return result;
}

RhoplusInversion invert_table(std::span<const RhoplusRow> data, RhoplusSurface surface) {
  std::vector<RhoplusDatum> values;
  values.reserve(data.size());
  for (const RhoplusRow& row : data) {
    values.push_back(datum_of(row));
  }
  return invert(values, surface == RhoplusSurface::conducting, max_rhoplus_layers);
}

}  // namespace

RhoplusRun rhoplus(std::span<RhoplusRow> data, RhoplusSurface surface, RhoplusInversion* details) {
  RhoplusInversion inversion;
  RhoplusRun result;
  try {
    inversion = invert_table(data, surface);
    put_response(inversion, data);
    result = summary_of(inversion);
  } catch (const std::exception& failure) {
    for (RhoplusRow& row : data) {
      row.model_resistivity = row.model_phase = no_data;
    }
    inversion = {};
    result = {};
    result.status = rhoplus_failed;
    result.message = failure.what();
  }
  if (details != nullptr) {
    *details = std::move(inversion);
  }
  return result;
}

}  // namespace numerics::rhoplus
