// raw_scan_rates.h: the scan rates at which a station was read.
#pragma once
#include <cstdint>
#include <vector>

#include "database/reading.h"

namespace Module_averaged_data {

/// Scan rates of all raw readings of a key (its scan rate is ignored) at a station, Hz. Throws dao::Error.
std::vector<float> raw_scan_rates(const Module_database::ReadingKey& key, std::int32_t StationID);

}  // namespace Module_averaged_data
