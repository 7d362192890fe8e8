// averages.h: from repeats to averages and from averages to merged curves.
//
// All procedures need an open survey. Each returns 0, or -1 after a message; its result then has ID 0. Those
// of computed_rows.h do the same without messages.
//
// `frequencies` is the list of the key's reference type: an average has no other frequencies. The rows of the
// station are looked up once; reduced_reading_at is given them.
#pragma once
#include <cstdint>

#include "core/frequencies.h"
#include "database/reading.h"
#include "database/stations.h"

namespace Module_averaged_data {

using Module_database::ReadingKey;
using Module_database::StationRows;
using Module_database::StoredReading;

enum class AllowRaw { no, yes };  // whether a file of already reduced data will do

/// Reduces the repeats of a key to its stored average (ReductionType 1). Use flags, masks and offsets of an
/// average with the same number of frequencies are kept; otherwise the earlier row is replaced.
/// @param average the stored row; ID 0 if no repeat is used, and then nothing was stored or changed
[[nodiscard]] int average_repeats(const ReadingKey& key, const Frequencies& frequencies,
                                  StoredReading& average);

/// Combines the averages of all scan rates of a key (its scan rate is ignored) into the stored merged curve
/// (ReductionType 2). @param merged the stored row; ID 0 if no scan rate is used
[[nodiscard]] int merge_scan_rates(const ReadingKey& key, const Frequencies& frequencies,
                                   StoredReading& merged);

/// The stored average (reduction 1) or merged curve (reduction 2) of a key, computed if it is missing, or if
/// an earlier version has computed it with frequencies of 0 and below.
/// @param reading ID 0 if there is none and none can be computed
[[nodiscard]] int get_reduced_reading(std::int32_t reduction, AllowRaw allow_raw, const ReadingKey& key,
                                      const Frequencies& frequencies, StoredReading& reading);
[[nodiscard]] int reduced_reading_at(const StationRows& place, std::int32_t reduction, AllowRaw allow_raw,
                                     const ReadingKey& key, const Frequencies& frequencies,
                                     StoredReading& reading);

/// Rebuilds all averages and merged curves of the survey, with progress. It can be stopped between stations:
/// what was rebuilt by then is kept, and the user is told how many stations keep their earlier curves. A
/// group of readings that can't be reduced is skipped; one message at the end names the first ones.
[[nodiscard]] int recalculate_merged();

}  // namespace Module_averaged_data
