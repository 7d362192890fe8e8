// data_sets.h: the readings that the main view shows: a line, a station of it, a scan rate of the station.
#pragma once
#include "reduction/data_sets/profile_data_set.h"
#include "reduction/data_sets/repeat_data_set.h"
#include "reduction/data_sets/station_data_set.h"
#include "reduction/unsupported_curves.h"

namespace Module_averaged_data {

struct DataSets {
  ProfileDataSet profile;
  StationDataSet station;
  RepeatDataSet repeats;
  std::vector<UnsupportedCurve> unsupported;  // of the profile's line and curves
};

/// What is loaded now. The windows read it; the procedures below and the edits change it.
DataSets& data_sets();

/// Whether a curve of a station is one of those; scan rate in Hz, 0 for the merged curve.
[[nodiscard]] bool is_unsupported(double station, float scan_rate);

/// Empties all of it, and session().repeat_count.
void reset_data_sets();

/// Empties the repeats, and session().repeat_count.
void reset_repeat_data();

// Each loads what belongs to the session's selection, on the session's frequency list.
// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_selected_profile();
[[nodiscard]] int load_selected_station(const NeighbourOptions& options);
/// Sets session().repeat_count. A current scan rate of 0 means the first one of the station, which becomes
/// the session's.
[[nodiscard]] int load_selected_repeats();

/// Loads the session's scan rate of the station whose curves are loaded. The selection may have gone on to
/// another dipole length since, whose repeats don't belong beside those curves. Sets session().repeat_count.
/// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_repeats_of_shown_station();

}  // namespace Module_averaged_data
