#include "output/rhoplus_data.h"

#include <algorithm>
#include <cmath>

#include "core/frequency_text.h"
#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_output {

using Module_database::Curve;
using Module_database::StoredReading;

namespace {

constexpr float min_resistivity = 0.001F;      // ohm-m: Rho+ takes logarithms
constexpr float min_resistivity_error = 0.1F;  // ohm-m
constexpr float longest_error = 999999.0F;     // ohm-m; a longer one would run into the resistivity before it

struct Datum {
  float value = 0.0F;
  float error = 0.0F;
  float file_error = 0.0F;
  bool used = false;
};

/// A value, or 0 where there is none: no file is given the mark of an absent value.
float value_or_zero(const Curve& curve, int field, std::size_t position) {
  return curve.is_present(field, position) ? curve.value(field, position) : 0.0F;
}

/// The error that the files give for a value, or 0 where they give none.
/// @param factor  that multiplies the value
float file_error(const Curve& curve, int field, std::size_t position, float factor) {
  const float error = factor * curve.error(field, position);
  return std::isfinite(error) ? std::max(error, 0.0F) : 0.0F;  // an absent one is far below 0
}

Datum resistivity_at(const Curve& curve, std::size_t position, float scale, const RhoplusSettings& settings) {
  using namespace Module_database;
  Datum rho;
  rho.used = curve.point_counts(field_resistivity, position);
  rho.value = scale * value_or_zero(curve, rho.used ? field_resistivity : field_all_resistivity, position);
  rho.error =
      scale * value_or_zero(curve, rho.used ? field_resistivity_deviation : field_all_resistivity_deviation,
                            position);
  rho.value = std::max(rho.value, min_resistivity);
  if (rho.used && settings.use_file_errors == 1) {
    rho.file_error = file_error(curve, field_resistivity, position, scale);
  }
  const float floor = std::abs(rho.value) * settings.resistivity_error_floor / 100.0F;
  rho.error = std::max({rho.error, floor, min_resistivity_error, rho.file_error});
  return rho;
}

Datum phase_at(const Curve& curve, std::size_t position, const RhoplusSettings& settings) {
  using namespace Module_database;
  Datum phi;
  phi.used = curve.point_counts(field_phase, position) &&
             !(settings.exclude_negative_phase == 1 && curve.value(field_phase, position) <= 0.0F);
  phi.value = value_or_zero(curve, phi.used ? field_phase : field_all_phase, position);
  phi.error = value_or_zero(curve, phi.used ? field_phase_deviation : field_all_phase_deviation, position);
  if (phi.used && settings.use_file_errors == 1) {
    phi.file_error = file_error(curve, field_phase, position, 1.0F);
  }
  phi.error = std::max({phi.error, settings.phase_error_floor, phi.file_error});
  return phi;
}

std::string frequency_field(float frequency) {
  constexpr int least_decimals = 4;
  constexpr double parts = 1e4;
  constexpr std::size_t width = 10;
  return pad_field(frequency_text(frequency, least_decimals, parts, width), width);
}

std::string data_line(float frequency, const Datum& rho, const Datum& phi) {
  const auto flag = [](bool used) { return used ? " 1" : " 0"; };
  return frequency_field(frequency) + pad_field(format_number(rho.value, "0.00"), 12) +
         pad_field(format_number(std::min(rho.error, longest_error), "0.00"), 10) +
         pad_field(format_number(phi.value, "0.00"), 10) + pad_field(format_number(phi.error, "0.00"), 10) +
         flag(rho.used) + flag(phi.used) + "\r\n";
}

void add_row(RhoplusTables& tables, float frequency, const Datum& rho, const Datum& phi) {
  numerics::rhoplus::RhoplusRow& row = tables.data.emplace_back();
  row.frequency = frequency;
  row.resistivity = rho.value;
  row.resistivity_error = rho.error;
  row.phase = phi.value;
  row.phase_error = phi.error;
  row.use_resistivity = rho.used ? 1.0F : 0.0F;
  row.use_phase = phi.used ? 1.0F : 0.0F;
  tables.file_errors.push_back({rho.file_error, phi.file_error});
}

enum class Lines { without, with };

RhoplusTables tables_of(const StoredReading& merged, const Frequencies& frequencies,
                        const RhoplusSettings& settings, Lines lines) {
  RhoplusTables tables;
  if (merged.ID == 0 || !merged.UseReading || !(merged.UseResistivity || merged.UsePhase)) {
    return tables;
  }
  const float scale = settings.resistivity_scale * (settings.apply_static == 1 ? merged.ResOffset : 1.0F);
  const Curve& curve = merged.curve;
  tables.index.row_number.assign(curve.count(), 0);
  bool resistivity_is_used = false;
  for (std::size_t position = 0; position < curve.count(); ++position) {
    const float frequency = curve.frequencies[position];
    const std::int32_t listed = frequencies.enabled_position(frequency);
    if (listed < 0) {
      continue;
    }
    const Datum rho = resistivity_at(curve, position, scale, settings);
    const Datum phi = phase_at(curve, position, settings);
    if (rho.used || phi.used || settings.exclude_data != 1) {
      add_row(tables, frequency, rho, phi);
      if (lines == Lines::with) {
        tables.data_lines += data_line(frequency, rho, phi);
      }
      tables.index.row_number[position] = static_cast<std::int32_t>(tables.data.size());
      tables.index.frequency_position.push_back(listed);
      resistivity_is_used = resistivity_is_used || rho.used;
    }
    if (lines == Lines::with) {
      tables.frequency_lines += frequency_field(frequency) + " rho  phi\r\n";
    }
  }
  return resistivity_is_used ? tables : RhoplusTables{};
}

}  // namespace

RhoplusTables rhoplus_tables(const StoredReading& merged, const Frequencies& frequencies,
                             const RhoplusSettings& settings) {
  return tables_of(merged, frequencies, settings, Lines::with);
}

RhoplusTables rhoplus_rows(const StoredReading& merged, const Frequencies& frequencies,
                           const RhoplusSettings& settings) {
  return tables_of(merged, frequencies, settings, Lines::without);
}

std::string rhoplus_stem(const RhoplusSettings& settings, double station) {
  return settings.root_name + "_" + format_number(station, "0");
}

std::string rhoplus_control_text(const RhoplusTables& tables, const RhoplusSettings& settings,
                                 double station) {
  return "data *\r\ntask *\r\nmodel\r\n" +
         std::string(settings.surface == 0 ? "surface con\r\n" : "surface ins\r\n") + "root " +
         rhoplus_stem(settings, station) + "\r\nexecute\r\n\r\n" + tables.data_lines + "    0\r\n\r\n" +
         tables.frequency_lines + "    0\r\n";
}

}  // namespace Module_output
