#include "reduction/data_sets/profile_data_set.h"

#include <algorithm>
#include <optional>

#include "core/absent_value.h"
#include "core/search_sort.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

/// The merged curve of the station whose first row this is. A derived row is the curve itself; for one that
/// came from a file the curve may still have to be made.
int read_merged(const dao::Recordset& row, ReadingKey key, StoredReading& merged) {
  if (row.get_long("FileID") < 0 && row.get_single("SampleRate") == 0.0F) {
    merged = Module_database::read_reading(row);
    return 0;
  }
  key.station = row.get_double("Station");
  key.scan_rate = 0.0F;
  return get_reduced_reading(reduction_merged, AllowRaw::yes, key, merged);
}

void fill_column(const StoredReading& merged, ProfileColumn& column) {
  const std::vector<float>& frequencies = profile_data_set().frequencies;
  const Module_database::Curve& curve = merged.curve;
  column.ID = merged.ID;
  column.UseReading = merged.UseReading;
  column.UseResistivity = merged.UseResistivity;
  column.UsePhase = merged.UsePhase;
  column.ResOffset = merged.ResOffset;
  column.resistivity.assign(frequencies.size(), no_data);
  column.phase.assign(frequencies.size(), no_data);
  column.mask.assign(frequencies.size(), {});
  for (std::size_t i = 0; i < curve.count(); ++i) {
    const int position = basSearchSort::search_sorted(frequencies, curve.frequencies[i]);
    if (position < 0) {
      continue;
    }
    const auto at = static_cast<std::size_t>(position);
    column.resistivity[at] = curve.value(Module_database::field_resistivity, i);
    column.phase[at] = curve.value(Module_database::field_phase, i);
    column.mask[at] = {std::min(curve.counts_at(Module_database::field_resistivity, i), 1),
                       std::min(curve.counts_at(Module_database::field_phase, i), 1)};
  }
}

void include(CurveExtents& extents, const ProfileColumn& column) {
  for (std::size_t i = 0; i < column.resistivity.size(); ++i) {
    extents.resistivity.include(column.resistivity[i]);
    extents.phase.include(column.phase[i]);
  }
}

void find_extents(ProfileDataSet& data) {
  data.extents = {};
  data.extents.frequency.include(data.frequencies.front());
  data.extents.frequency.include(data.frequencies.back());
  for (const ProfileColumn& column : data.columns) {
    include(data.extents, column);
  }
}

int load_columns(const ReadingKey& key) {
  ProfileDataSet& data = profile_data_set();
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE LineNumber = '" + key.line + "' AND " +
      kind_criteria(reduction_merged, key) + " ORDER BY Station,FileID");
  std::optional<double> last_station;
  for (; !rows.eof(); rows.move_next()) {
    const double station = rows.get_double("Station");
    if (last_station && !(station > *last_station)) {
      continue;
    }
    last_station = station;
    StoredReading merged;
    if (read_merged(rows, key, merged) != 0) {
      return -1;
    }
    if (merged.ID == 0) {
      continue;
    }
    ProfileColumn& column = data.columns.emplace_back();
    column.StationID = rows.get_long("StationID");
    column.station = station;
    fill_column(merged, column);
  }
  return 0;
}

}  // namespace

ProfileDataSet& profile_data_set() {
  static ProfileDataSet data;
  return data;
}

void reset_profile_data() { profile_data_set() = {}; }

int load_profile_data(const ReadingKey& key) {
  reset_profile_data();
  ProfileDataSet& data = profile_data_set();
  data.key = key;
  const std::span<const float> list = selected_frequency_list();
  if (list.empty()) {
    return 0;
  }
  data.frequencies.assign(list.begin(), list.end());
  const int status =
      trap_errors("An error occurred while generating the profile data: ", [&] { return load_columns(key); });
  find_extents(data);
  return status;
}

void store_profile_column(std::size_t column_index, const StoredReading& merged) {
  ProfileDataSet& data = profile_data_set();
  fill_column(merged, data.columns[column_index]);
  find_extents(data);
}

std::int32_t find_profile_column(double station) {
  const auto& columns = profile_data_set().columns;
  const auto found = std::ranges::find(columns, station, &ProfileColumn::station);
  return found == columns.end() ? -1 : static_cast<std::int32_t>(found - columns.begin());
}

double half_spacing(const ProfileDataSet& data) {
  if (data.columns.size() < 2) {
    return 1.0;
  }
  const double length = data.columns.back().station - data.columns.front().station;
  return 0.5 * length / static_cast<double>(data.columns.size() - 1);
}

}  // namespace Module_averaged_data
