// fixed_column_parser.h: processed tensor impedances in fixed columns.
//
// After a head line a record of three lines, which count as one text, holds each frequency, from the lowest
// to the highest. Columns count from 1; each value of a record is 10 columns wide. Tensor elements are in the
// order xx, xy, yx, yy.
#pragma once
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/file_report.h"

namespace formats::fixed_column {

inline constexpr std::size_t element_total = 4;

struct Head {
  std::string filter;
  float dipole = 0.0F;           // m; 0 where it isn't given
  float station_spacing = 0.0F;  // m
  float orientation = 0.0F;      // degrees
  bool has_orientation = false;
};

/// One frequency. Impedances are the file's numbers times 1e4, variances times the square of that; an absent
/// one is no_data.
struct TensorRecord {
  double frequency = 0.0;  // Hz, as it came, also if not above 0
  double scalar = 0.0;     // of column 71
  std::array<double, element_total> real{};
  std::array<double, element_total> imaginary{};
  std::array<double, element_total> variance{};
};

/// The apparent resistivity of a record is 0.2 |Z|^2 / f divided by 4, the square of this: its impedances
/// count as twice those in mV/km/nT.
inline constexpr double record_over_field_unit = 2.0;

/// The scan rate that the format means: four times the last and highest frequency.
inline constexpr double scan_rate_over_last_frequency = 4.0;

Head read_head(std::string_view line);

/// Reads the records after the head. One without a frequency is left out; what a cut file lacks is 0, and
/// what isn't a number is absent. The report says so.
std::vector<TensorRecord> read_records(LineReader& reader, FileReport& report);

}  // namespace formats::fixed_column
