#include "occam/setup/line_data.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/absent_value.h"

namespace Module_occam {

namespace {

constexpr double max_error = 999999.0;  // a longer one would run into the datum in the field before
constexpr double phase_offset = 0.1;    // degrees, added so that a phase of 0 has an error

/// The least errors, of log10 resistivity and in degrees.
struct LeastErrors {
  double resistivity;
  double phase;
};

LeastErrors least_errors(ErrorForm form) {
  constexpr double least_in_file = 0.0001;  // four decimals; an error of 0 would weigh without limit
  return form == ErrorForm::relative ? LeastErrors{least_in_file, least_in_file} : LeastErrors{0.001, 0.1};
}

/// 0 for 0; the sign doesn't count.
double safe_log10(double value) { return value == 0.0 ? 0.0 : std::log10(std::abs(value)); }

/// How far the fit misses the datum; 0 without a fit.
double missed_by(double datum, double fit) { return is_absent(fit) ? 0.0 : std::abs(fit - datum); }

/// The error of the logarithm of what has a relative error.
double of_logarithm(double relative) { return relative * std::numbers::log10e; }

double resistivity_error_as_before(double rho, double relative, const ErrorRule& rule) {
  const double magnitude = std::abs(safe_log10(rho));
  if (rule.rhoplus_error) {
    return rule.standard_error ? relative * magnitude : of_logarithm(relative);  // log10(exp(relative))
  }
  return rule.standard_error ? relative * magnitude : rule.res_floor;
}

double phase_error_as_before(double phase, double missed, const ErrorRule& rule) {
  const double floor = rule.phase_floor / 100.0;
  if (!rule.rhoplus_error) {
    return floor * std::abs(phase);
  }
  const double magnitude = std::abs(phase) + phase_offset;
  return (floor + missed / magnitude) * magnitude;
}

/// Adds the rows of one mode.
void add_rows(LineData& line, const ModeCurve& curve) {
  const Module_output::RhoplusTables& tables = curve.tables;
  const auto add = [&](std::int32_t position, DataType type, double datum, double error) {
    ++line.frequency_rows[static_cast<std::size_t>(position)];
    line.rows.push_back({line.taking_part, position + 1, type, datum, error});
  };
  for (std::size_t index = 0; index < tables.data.size(); ++index) {
    const auto& row = tables.data[index];
    const Module_output::FileErrors& of_files = tables.file_errors[index];
    const std::int32_t position = tables.index.frequency_position[index];
    if (position < 0 || static_cast<std::size_t>(position) >= line.frequency_rows.size()) {
      continue;
    }
    if (row.use_resistivity > 0.0F) {
      const double rho = row.resistivity;
      add(position, curve.mode.resistivity, safe_log10(rho),
          resistivity_error(rho, row.model_resistivity, of_files.resistivity, curve.rule));
    }
    if (row.use_phase > 0.0F) {
      const double phase = row.phase;
      add(position, curve.mode.phase, phase, phase_error(phase, row.model_phase, of_files.phase, curve.rule));
    }
  }
}

}  // namespace

double resistivity_error(double rho, double fit, double file_error, const ErrorRule& rule) {
  const double missed = rule.rhoplus_error ? missed_by(rho, fit) / std::abs(rho) : 0.0;
  const double relative = rule.res_floor / 100.0 + missed;
  const double error = rule.form == ErrorForm::relative ? of_logarithm(relative)
                                                        : resistivity_error_as_before(rho, relative, rule);
  const double of_files = of_logarithm(file_error / std::abs(rho));
  return std::clamp(std::max(error, of_files), least_errors(rule.form).resistivity, max_error);
}

double phase_error(double phase, double fit, double file_error, const ErrorRule& rule) {
  const double missed = rule.rhoplus_error ? missed_by(phase, fit) : 0.0;
  const double error = rule.form == ErrorForm::relative ? rule.phase_floor + missed
                                                        : phase_error_as_before(phase, missed, rule);
  return std::clamp(std::max(error, file_error), least_errors(rule.form).phase, max_error);
}

void add_station(LineData& line, const PositionedStation& station, std::span<const ModeCurve> curves) {
  ++line.taking_part;
  const auto rows_before = static_cast<std::ptrdiff_t>(line.rows.size());
  for (const ModeCurve& curve : curves) {
    add_rows(line, curve);
  }
  const auto first_row = line.rows.begin() + rows_before;
  if (first_row == line.rows.end()) {
    return;
  }
  if (curves.size() > 1) {
    std::stable_sort(first_row, line.rows.end(), [](const DataRow& a, const DataRow& b) {
      return a.frequency_number < b.frequency_number;
    });
  }
  line.site_positions.push_back(static_cast<float>(station.position));
  line.site_stations.push_back(station.station);
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
  for (DataRow& row : line.rows) {
    row.frequency_number = number[static_cast<std::size_t>(row.frequency_number) - 1];
  }
  return frequencies;
}

}  // namespace Module_occam
