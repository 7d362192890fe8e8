// curve_columns.h: the columns of a table of curves: their names, and where they stand in a header.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace formats::csv {

/// In the order in which they are written.
enum class CurveColumn : std::uint8_t {
  line,
  station,
  site,
  data_type,
  reference_type,
  dipole,
  scan_rate,
  event,
  date,
  azimuth,
  latitude,
  longitude,
  elevation,
  easting,
  northing,
  frequency,
  resistivity,
  resistivity_error,
  phase,
  phase_error,
  tipper_real,
  tipper_imaginary,
  tipper_error,
  masked,
  resistivity_masked,
  phase_masked
};
inline constexpr std::size_t curve_column_count = 26;

/// Names with their units; a reader takes those without, too: "latitude".
inline constexpr std::array<std::string_view, curve_column_count> curve_column_names{
    "line",
    "station",
    "site",
    "data_type",
    "reference_type",
    "dipole_m",
    "scan_rate_Hz",
    "event",
    "date",
    "hx_azimuth_deg",
    "latitude_deg",
    "longitude_deg",
    "elevation_m",
    "easting_m",
    "northing_m",
    "frequency_Hz",
    "resistivity_ohm_m",
    "resistivity_error_ohm_m",
    "phase_deg",
    "phase_error_deg",
    "tipper_real",
    "tipper_imaginary",
    "tipper_error",
    "masked",
    "resistivity_masked",
    "phase_masked"};

constexpr std::string_view column_name(CurveColumn column) {
  return curve_column_names[static_cast<std::size_t>(column)];
}

/// The column of each field of a header; none where the name is unknown, or is there a second time.
using CurveColumns = std::vector<std::optional<CurveColumn>>;
CurveColumns curve_columns(std::span<const std::string> header);

/// The name of a column that no curve can do without and that isn't there; empty if none is missing.
std::string missing_curve_column(const CurveColumns& columns);

/// Whether a header is one of results: fitted values stand beside the observed ones, as those of Rho+ do.
bool has_fitted_values(std::span<const std::string> header);

/// What separates the fields of a header: comma, semicolon or tab, whichever stands in it most often.
char header_separator(std::string_view header);

}  // namespace formats::csv
