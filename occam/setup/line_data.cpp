#include "occam/setup/line_data.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/absent_value.h"

namespace Module_occam {

namespace {

constexpr double min_resistivity_error = 0.001;  // of log10 resistivity
constexpr double min_phase_error = 0.1;          // degrees
constexpr double max_error = 999999.0;           // a longer one would run into the datum in the field before
constexpr double phase_offset = 0.1;             // degrees, added so that a phase of 0 has an error

/// 0 for 0; the sign doesn't count.
double safe_log10(double value) { return value == 0.0 ? 0.0 : std::log10(std::abs(value)); }

/// How far the fit misses the datum; 0 without a fit.
double missed_by(double datum, double fit) { return is_absent(fit) ? 0.0 : std::abs(fit - datum); }

}  // namespace

double resistivity_error(double rho, double fit, double file_error, const ErrorRule& rule) {
  const double magnitude = std::abs(safe_log10(rho));
  double error = 0.0;
  if (rule.rhoplus_error) {
    const double relative = rule.res_floor / 100.0 + missed_by(rho, fit) / std::abs(rho);
    error =
        rule.standard_error ? relative * magnitude : relative * std::numbers::log10e;  // log10(exp(relative))
  } else {
    error = rule.standard_error ? rule.res_floor / 100.0 * magnitude : rule.res_floor;
  }
  const double of_files = file_error / std::abs(rho) * std::numbers::log10e;  // of the logarithm
  return std::clamp(std::max(error, of_files), min_resistivity_error, max_error);
}

double phase_error(double phase, double fit, double file_error, const ErrorRule& rule) {
  const double floor = rule.phase_floor / 100.0;
  double error = floor * std::abs(phase);
  if (rule.rhoplus_error) {
    const double magnitude = std::abs(phase) + phase_offset;
    error = (floor + missed_by(phase, fit) / magnitude) * magnitude;
  }
  return std::clamp(std::max(error, file_error), min_phase_error, max_error);
}

void add_station(LineData& line, const PositionedStation& station, const Module_output::RhoplusTables& tables,
                 bool electric_along_strike, const ErrorRule& rule) {
  using namespace Module_output;
  const Mode& mode = electric_along_strike ? te_mode : tm_mode;
  ++line.taking_part;
  const std::size_t rows_before = line.rows.size();
  const auto add = [&](std::int32_t position, DataType type, double datum, double error) {
    ++line.frequency_rows[static_cast<std::size_t>(position)];
    line.row_positions.push_back(position);
    line.rows.push_back({line.taking_part, 0, type, datum, error});
  };
  for (std::size_t index = 0; index < tables.data.size(); ++index) {
    const auto& row = tables.data[index];
    const FileErrors& of_files = tables.file_errors[index];
    const std::int32_t position = tables.index.frequency_position[index];
    if (position < 0 || static_cast<std::size_t>(position) >= line.frequency_rows.size()) {
      continue;
    }
    if (row.use_resistivity > 0.0F) {
      const double rho = row.resistivity;
      add(position, mode.resistivity, safe_log10(rho),
          resistivity_error(rho, row.model_resistivity, of_files.resistivity, rule));
    }
    if (row.use_phase > 0.0F) {
      const double phase = row.phase;
      add(position, mode.phase, phase, phase_error(phase, row.model_phase, of_files.phase, rule));
    }
  }
  if (line.rows.size() > rows_before) {
    line.site_positions.push_back(static_cast<float>(station.position));
    line.site_stations.push_back(station.station);
  }
}

std::vector<float> number_frequencies(LineData& line, std::span<const float> frequency_list) {
  std::vector<float> frequencies;
  std::vector<int> number(line.frequency_rows.size(), 0);
  for (std::size_t position = 0; position < line.frequency_rows.size(); ++position) {
    if (line.frequency_rows[position] > 0) {
      frequencies.push_back(frequency_list[position]);
      number[position] = static_cast<int>(frequencies.size());
    }
  }
  for (std::size_t row = 0; row < line.rows.size(); ++row) {
    line.rows[row].frequency_number = number[static_cast<std::size_t>(line.row_positions[row])];
  }
  return frequencies;
}

}  // namespace Module_occam
