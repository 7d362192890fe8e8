// computed_rows.h: averages and merged curves computed and stored, for callers that tell the user about
// failures themselves.
//
// All procedures need an open survey and throw dao::Error. A result has ID 0 where there is nothing to
// compute from; then nothing was stored or changed.
#pragma once
#include "reduction/averages.h"

namespace Module_averaged_data {

/// What average_repeats does.
StoredReading compute_average(const StationRows& place, const ReadingKey& key,
                              const Frequencies& frequencies);

/// What merge_scan_rates does.
StoredReading compute_merged(const StationRows& place, const ReadingKey& key, const Frequencies& frequencies);

/// Removes the averages and merged curves of a station of those data types that have no reading any more from
/// which they could be computed.
void drop_curves_without_readings(std::int32_t StationID);

/// What get_reduced_reading does.
StoredReading find_or_compute(const StationRows& place, std::int32_t reduction, AllowRaw allow_raw,
                              const ReadingKey& key, const Frequencies& frequencies);

}  // namespace Module_averaged_data
