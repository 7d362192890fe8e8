// reduced_reading.h: reduced readings of a station that has been looked up already.
#pragma once
#include <cstdint>

#include "reduction/averages.h"

namespace Module_averaged_data {

/// What get_reduced_reading does once it knows the station's ID. Throws dao::Error.
/// @return 0, or -1 after a message
[[nodiscard]] int reduced_reading_at(std::int32_t StationID, std::int32_t reduction, AllowRaw allow_raw,
                                     const ReadingKey& key, StoredReading& reading);

}  // namespace Module_averaged_data
