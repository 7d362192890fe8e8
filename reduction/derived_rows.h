// derived_rows.h: the rows of ReadingsDataTable that hold averages and merged curves.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// The key of the current row.
Module_database::ReadingKey key_of_row(const dao::Recordset& row);

/// The stored row that answers the criteria. Points whose frequency isn't above 0, which earlier versions
/// averaged, are left out. A row with damaged masks has no curve; damaged values read as 0.
std::optional<Module_database::StoredReading> find_derived_row(const std::string& criteria);

/// False for a curve that an earlier version computed with frequencies of 0 and below.
bool frequencies_are_positive(const Module_database::Curve& curve);

/// The masks that a row keeps when its values are computed again, of as many frequencies: those that are
/// stored, except that a mask of 0 over a value that was absent is nobody's edit and becomes 1 where there is
/// a value now. A mask of 1 over an absent value stays, so that computing again changes nothing.
std::vector<std::int32_t> kept_mask(const Module_database::Curve& stored,
                                    const Module_database::Curve& computed);

enum class Overrides { keep, write };  // whether flags and offsets of the row are written

/// Writes a reading with its facts into the row of its ID, or into a new row if it has none, and sets its ID
/// and FileID.
/// @param merge_frequency stored as MergeFrequency
void store_derived_row(std::int32_t reduction, float merge_frequency, const Module_database::ReadingKey& key,
                       const Module_database::StationRows& place, Overrides overrides,
                       Module_database::StoredReading& reading);

}  // namespace Module_averaged_data
