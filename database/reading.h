// reading.h: the in-memory form of a reading, and the bytes it is stored as.
//
// Conventions: frequency Hz, ascending; resistivity ohm-m; phase degrees; a missing value is no_data (-1e32);
// a mask value is 1 for a point that counts and 0 for a masked one. Field numbers count from 1, as everywhere
// in the field.
#pragma once
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/absent_value.h"
#include "platform/dao/recordset.h"

namespace Module_database {

inline constexpr int field_count = 20;  // fields for each frequency
inline constexpr int mask_count = 2;    // resistivity, phase
inline constexpr int error_count = 2;   // of resistivity, of phase

// ReductionType of a reading or file.
inline constexpr std::int32_t reduction_raw = 0;
inline constexpr std::int32_t reduction_averaged = 1;
inline constexpr std::int32_t reduction_merged = 2;

// FileID of a reading that was computed here; that of any other is the ID of its file in FileTable.
inline constexpr std::int32_t derived_file = -1;

enum Field : int {
  field_resistivity = 1,
  field_phase = 2,
  field_resistivity_deviation = 3,  // averaged and merged readings; raw: electric field magnitude
  field_phase_deviation = 4,        // averaged and merged readings; raw: magnetic field magnitude
  // Averaged and merged readings: the same of all values present, masked ones included.
  field_all_resistivity = 5,
  field_all_phase = 6,
  field_all_resistivity_deviation = 7,
  field_all_phase_deviation = 8,
  field_impedance_real = 9,
  field_impedance_imaginary = 10,
  field_resistivity_error = 11,  // or variance of the impedance
  field_phase_error = 12,        // or variance of the impedance
};

/// The arrays of one reading: n frequencies, 20 fields and 2 masks for each. The field runs fastest, as in
/// the stored bytes.
///
/// Errors are standard errors of the values, of resistivity in ohm-m and of phase in degrees. Files bring
/// them in several meanings, and fields 11 and 12 keep those as they came; these are brought to one when a
/// file is read.
struct Curve {
  std::vector<float> frequencies;  // length n
  std::vector<float> data;         // length 20 n
  std::vector<std::int32_t> mask;  // length 2 n
  std::vector<float> errors;       // length 2 n, no_data where none is known; empty: none at all

  [[nodiscard]] std::size_t count() const { return frequencies.size(); }
  /// Sets the size to n frequencies, everything 0, without errors.
  void assign(std::size_t n);
  /// Copies a point of another curve behind the last one.
  void append(const Curve& source, std::size_t index);
  /// The standard error of resistivity (1) or phase (2) of a point; no_data where none is known.
  [[nodiscard]] float error(int field_number, std::size_t index) const {
    return errors.empty() ? no_data
                          : errors[index * error_count + static_cast<std::size_t>(field_number - 1)];
  }
  /// The same to be written; all errors are there after the first call.
  float& error_at(int field_number, std::size_t index) {
    errors.resize(count() * error_count, no_data);
    return errors[index * error_count + static_cast<std::size_t>(field_number - 1)];
  }
  float& value(int field_number, std::size_t index) {
    return data[index * field_count + static_cast<std::size_t>(field_number - 1)];
  }
  [[nodiscard]] float value(int field_number, std::size_t index) const {
    return data[index * field_count + static_cast<std::size_t>(field_number - 1)];
  }
  std::int32_t& counts_at(int field_number, std::size_t index) {
    return mask[index * mask_count + static_cast<std::size_t>(field_number - 1)];
  }
  [[nodiscard]] std::int32_t counts_at(int field_number, std::size_t index) const {
    return mask[index * mask_count + static_cast<std::size_t>(field_number - 1)];
  }
  /// Whether there is a value: neither absent nor an overflow.
  [[nodiscard]] bool is_present(int field_number, std::size_t index) const {
    const float present = value(field_number, index);
    return std::isfinite(present) && !is_absent(double{present});
  }
  /// Whether resistivity (1) or phase (2) of a point takes part in averages, output and inversions: it isn't
  /// masked, there is a value, and its frequency is above 0. A mask alone doesn't tell: that of a derived
  /// curve stays when its value goes, and files come with frequencies of 0 and below.
  [[nodiscard]] bool point_counts(int field_number, std::size_t index) const {
    return counts_at(field_number, index) == 1 && is_present(field_number, index) &&
           frequencies[index] > 0.0F;
  }
};

/// The data types of the tipper, the vertical magnetic field over the horizontal one. Their curves have its
/// real part in place of the resistivity and its imaginary part in place of the phase, so that they are
/// averaged and merged as all others, but no graph, output or inversion of resistivities may take them.
inline constexpr std::array<std::string_view, 2> tipper_data_types{"HzHx", "HzHy"};
inline bool is_tipper(std::string_view data_type) {
  return std::ranges::find(tipper_data_types, data_type) != tipper_data_types.end();
}
inline constexpr std::string_view no_tipper_criterion = "DataType NOT IN ('HzHx','HzHy')";

/// Which readings belong together: one component of one station at one scan rate.
struct ReadingKey {
  std::string line;
  double station = 0.0;
  std::int32_t reference_type = 0;
  float scan_rate = 0.0F;  // Hz; 0 for a merged curve
  std::string data_type;   // ExHx, ExHy, EyHx, EyHy, QP, HzHx, HzHy
  float dipole = 0.0F;     // m
};

/// The curves of one kind along one line.
struct LineSelection {
  std::string line;
  std::int32_t reference_type = 0;
  std::string data_type;  // ExHx, ExHy, EyHx, EyHy, QP
  float dipole = 0.0F;    // m

  /// @param scan_rate Hz; 0 for a merged curve
  [[nodiscard]] ReadingKey at(double station, float scan_rate = 0.0F) const {
    return {line, station, reference_type, scan_rate, data_type, dipole};
  }
};

// EyTurned of a reading: whether its import gave Ey the other sign, 180 degrees on the phases of EyHx and
// EyHy.
inline constexpr std::int32_t ey_not_known = -1;
inline constexpr std::int32_t ey_as_measured = 0;
inline constexpr std::int32_t ey_turned = 1;

/// In which axes a reading was measured.
struct ReadingAxes {
  std::int32_t EyTurned = ey_not_known;
  float HxAzimuth = no_data;  // degrees clockwise from north

  bool operator==(const ReadingAxes&) const = default;
};

/// One stored reading: its curve and the other columns of its row. Errors and axes are kept apart from the
/// row, see reading_facts.h.
struct StoredReading {
  std::int32_t ID = 0;      // 0: no reading
  std::int32_t FileID = 0;  // above 0: of the file it was read from; below 0: computed here
  std::int32_t EventNumber = 0;
  Curve curve;
  bool UseReading = true;
  bool UseResistivity = true;
  bool UsePhase = true;
  float ResOffset = 1.0F;    // factor on resistivity
  float PhaseOffset = 0.0F;  // degrees, added to phase
  ReadingAxes axes;
};

/// Reads the current row of a recordset on ReadingsDataTable, without errors and axes; a ResOffset of 0 or
/// below reads as 1. Throws if the row's bytes don't have the lengths that its NumFrequencies asks for.
StoredReading read_reading(const dao::Recordset& row);

/// Writes NumFrequencies, NumFields and the three byte columns of the row being edited.
void write_curve(dao::Recordset& row, const Curve& curve);

// Little-endian bytes of an array and back. The bytes must be a whole number of elements.
std::span<const std::byte> bytes_of(std::span<const float> values);
std::span<const std::byte> bytes_of(std::span<const std::int32_t> values);
std::vector<float> singles_from(std::span<const std::byte> bytes);
std::vector<std::int32_t> longs_from(std::span<const std::byte> bytes);

}  // namespace Module_database
