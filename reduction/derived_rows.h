// derived_rows.h: the rows of ReadingsDataTable that hold averages and merged curves.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "database/reading.h"
#include "database/stations.h"

namespace Module_averaged_data {

using Module_database::derived_file;
using Module_database::reduction_averaged;
using Module_database::reduction_merged;
using Module_database::reduction_raw;

inline constexpr std::string_view averaging_failed = "An error occurred while calculating the average data: ";

/// "StationID = 3 AND ReductionType=1 AND ReferenceType = 0 AND SampleRate = 256 AND DataType ='ExHy' AND
/// DipoleLength = 50" behind a test of FileID; `reduction_test` is "ReductionType=1" in this example.
std::string key_criteria(std::string_view file_test, std::int32_t StationID, std::string_view reduction_test,
                         const Module_database::ReadingKey& key);

/// The stored row that answers the criteria, without its curve.
struct DerivedRow {
  std::int32_t NumFrequencies = 0;
  Module_database::StoredReading edits;  // ID, the user's flags, offsets and, where it fits, mask
};
std::optional<DerivedRow> find_derived_row(const std::string& criteria);

enum class Overrides { keep, write };  // whether flags and offsets of the row are written

/// Writes a reading into the row of its ID, or into a new row if it has none, and sets its ID and FileID.
/// @param criteria what finds a new row again
/// @param merge_frequency stored as MergeFrequency
void store_derived_row(const std::string& criteria, std::int32_t reduction, float merge_frequency,
                       const Module_database::ReadingKey& key, const Module_database::StationRows& place,
                       Overrides overrides, Module_database::StoredReading& reading);

}  // namespace Module_averaged_data
