// stored_keys.h: which keys the survey has readings of.
#pragma once
#include <cstdint>
#include <vector>

#include "database/reading.h"
#include "reduction/skipped_groups.h"

namespace Module_averaged_data {

enum class ScanRate { part_of_key, left_out };

/// The keys of all readings of a reduction, each once, in no particular order; damaged rows are noted in
/// `skipped`. Throws dao::Error.
/// @param scan_rate `left_out`: readings that differ in nothing else have one key, of scan rate 0
std::vector<Module_database::ReadingKey> stored_keys(std::int32_t reduction, ScanRate scan_rate,
                                                     SkippedGroups& skipped);

}  // namespace Module_averaged_data
