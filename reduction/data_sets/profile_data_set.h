// profile_data_set.h: the merged curves of a whole line on the frequency list.
#pragma once
#include <array>

#include "reduction/averages.h"
#include "reduction/data_sets/curve_parts.h"
#include "reduction/data_sets/point_error.h"

namespace Module_averaged_data {

/// The merged curve of one station. Values, masks and errors run over the frequencies of the data set.
struct ProfileColumn {
  std::int32_t ID = 0;  // of the reading
  std::int32_t StationID = 0;
  double station = 0.0;
  bool UseReading = true;
  bool UseResistivity = true;
  bool UsePhase = true;
  float ResOffset = 1.0F;          // static factor: multiplies resistivity, not impedance
  std::vector<float> resistivity;  // ohm-m, without the static factor
  std::vector<float> phase;        // degrees
  std::vector<std::array<std::int32_t, Module_database::mask_count>> mask;
  std::vector<std::array<PointError, Module_database::error_count>> errors;  // without the static factor
};

struct ProfileDataSet {
  ReadingKey key;                      // its station and scan rate don't count
  std::vector<float> frequencies;      // Hz, the frequency list at loading
  CurveExtents extents;                // resistivity without the static factors
  std::vector<ProfileColumn> columns;  // in the order of their stations
};

/// Loads the merged curves of the key's line; one a station. Nothing without frequencies.
/// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_profile_data(const ReadingKey& key, const Frequencies& frequencies,
                                    ProfileDataSet& data);

/// Puts a merged curve into a column that exists.
void store_profile_column(ProfileDataSet& data, std::size_t column_index, const StoredReading& merged);

/// The column of a station, from 0; -1 if it has no merged curve.
std::int32_t find_profile_column(const ProfileDataSet& data, double station);

}  // namespace Module_averaged_data
