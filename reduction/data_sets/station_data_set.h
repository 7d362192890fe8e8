// station_data_set.h: the curves of one station: merged curve, averages, files of averaged data, and the
// merged curves of its neighbours.
#pragma once
#include <string>

#include "reduction/averages.h"
#include "reduction/data_sets/curve_parts.h"

namespace Module_averaged_data {

enum class NeighbourSide { both, before, after };  // in the order of the list that the user chooses from

/// Which other stations of the line are shown beside the selected one.
struct NeighbourOptions {
  bool show = false;
  bool all = false;  // the whole line; only with `show`
  int count = 0;     // on each chosen side
  NeighbourSide side = NeighbourSide::both;
};

/// The neighbours of a station as station indices (from 1), ascending, without the station itself. A window
/// that leaves the line at one end is moved back inside it as a whole.
std::vector<std::int32_t> neighbours_of(std::int32_t station_index, const NeighbourOptions& options);

enum class StationSlotKind {
  merged,
  average,
  file,          // averaged data that came from a file
  other_merged,  // further merged curves of the same station
  neighbour      // merged curve of another station
};

struct StationSlot {
  StationSlotKind kind = StationSlotKind::merged;
  StoredReading reading;    // ID 0: no reading
  float SampleRate = 0.0F;  // Hz
  double station = 0.0;
  std::int32_t station_index = -1;  // from 1
  std::vector<std::int32_t> list_position;
};

struct StationDataSet {
  ReadingKey key;  // its scan rate doesn't count
  NeighbourOptions neighbours;
  std::vector<float> scan_rates;  // Hz, of all averages, ascending, distinct
  std::int32_t neighbour_count = 0;
  CurveExtents extents;
  std::vector<StationSlot> slots;  // the merged curve first; empty: no data
};

/// Loads the curves of the key's station, which is the session's current one. Averages are left out while
/// neighbours are shown.
/// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_station_data(const ReadingKey& key, const NeighbourOptions& options,
                                    const Frequencies& frequencies, StationDataSet& data);

/// Puts a reading into a slot that exists.
void store_station_slot(StationDataSet& data, std::size_t slot, StoredReading reading,
                        const Frequencies& frequencies);

}  // namespace Module_averaged_data
