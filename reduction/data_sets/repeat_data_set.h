// repeat_data_set.h: the repeats of one station at one scan rate, with their average.
#pragma once
#include "reduction/averages.h"
#include "reduction/data_sets/curve_parts.h"

namespace Module_averaged_data {

struct RepeatSlot {
  StoredReading reading;                    // ID 0: no reading. Its masks go back to the row by position
  std::vector<std::int32_t> list_position;  // by point; -1: not in the frequency list
};

struct RepeatDataSet {
  ReadingKey key;
  std::int32_t repeat_count = 0;  // 0 also where there is an average without repeats
  std::size_t maximum_frequencies = 0;
  CurveExtents extents;
  std::vector<RepeatSlot> slots;  // the average first, then the repeats by event; empty: no data
};

/// Loads the repeats of a key.
/// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_repeat_data(const ReadingKey& key, const Frequencies& frequencies,
                                   RepeatDataSet& data);

/// Puts a reading into a slot, 0 for the average; behind the last one as a new slot.
void store_repeat_slot(RepeatDataSet& data, std::size_t slot, StoredReading reading,
                       const Frequencies& frequencies);

}  // namespace Module_averaged_data
