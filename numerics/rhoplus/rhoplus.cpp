#include "numerics/rhoplus/rhoplus.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <exception>
#include <fstream>
#include <limits>
#include <system_error>

#include "core/absent_value.h"
#include "numerics/rhoplus/chi_statistics.h"
#include "numerics/rhoplus/inversion.h"
#include "numerics/rhoplus/inversion_log.h"

namespace numerics::rhoplus {

namespace {

constexpr float no_data = -1e32F;

/// Into 32 bits: what is not a number is no_data, what is too large the largest there is.
float to_single(double value) {
  constexpr double largest = std::numeric_limits<float>::max();
  return std::isnan(value) ? no_data : static_cast<float>(std::clamp(value, -largest, largest));
}

RhoplusDatum datum_of(const RhoplusRow& row) {
  constexpr float used = 0.5F;
  return {row.frequency,       row.resistivity, row.resistivity_error,
          row.phase,           row.phase_error, row.use_resistivity > used,
          row.use_phase > used};
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

RhoplusRun run(std::string_view title, std::span<RhoplusRow> data, RhoplusSurface surface, std::string& log) {
  const bool conducting = surface == RhoplusSurface::conducting;
  std::vector<RhoplusDatum> values;
  values.reserve(data.size());
  for (const RhoplusRow& row : data) {
    values.push_back(datum_of(row));
  }
  const RhoplusInversion inversion = invert(values, conducting, max_rhoplus_layers);
  log = inversion_log(title, values, conducting, inversion);
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i].model_resistivity = to_single(inversion.rows[i].resistivity);
    data[i].model_phase = to_single(inversion.rows[i].phase);
  }
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
  result.model = layers_of(inversion.sheets);
  return result;
}

RhoplusRun run_without_failure(std::string_view title, std::span<RhoplusRow> data, RhoplusSurface surface,
                               std::string& log) {
  try {
    return run(title, data, surface, log);
  } catch (const std::exception& failure) {
    for (RhoplusRow& row : data) {
      row.model_resistivity = row.model_phase = no_data;
    }
    RhoplusRun result;
    result.status = rhoplus_failed;
    result.message = failure.what();
    log = "Rho+ inversion of " + std::string(title) + " failed: " + result.message + "\r\n";
    return result;
  }
}

}  // namespace

RhoplusRun rhoplus(const std::filesystem::path& run_directory, std::string_view root_and_station,
                   std::span<RhoplusRow> data, RhoplusSurface surface) {
  std::string log;
  RhoplusRun result = run_without_failure(root_and_station, data, surface, log);
  // Written straight to its place: it is made anew at every change, and waiting for the disk would cost more
  // than the inversion.
  const std::filesystem::path path = run_directory / (std::string(root_and_station) + ".out");
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(log.data(), static_cast<std::streamsize>(log.size()));
  file.close();
  if (!file) {
    const int reason = errno;
    std::error_code ignored;
    std::filesystem::remove(path, ignored);  // half a log, or that of an earlier run, would mislead
    if (result.status == rhoplus_ran) {
      result.status = rhoplus_log_not_written;
      result.message = path.string() + ": " + std::generic_category().message(reason);
    }
  }
  return result;
}

RhoplusRun rhoplus(std::span<RhoplusRow> data, RhoplusSurface surface, std::string* log) {
  std::string text;
  RhoplusRun result = run_without_failure("one table", data, surface, text);
  if (log != nullptr) {
    *log = std::move(text);
  }
  return result;
}

}  // namespace numerics::rhoplus
