#include "reduction/data_sets/profile_data_set.h"

#include <algorithm>
#include <optional>

#include "core/absent_value.h"
#include "core/search_sort.h"
#include "core/trap_errors.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

namespace {

/// The merged curve of the station whose first row this is. A derived row is the curve itself; for one that
/// came from a file the curve may still have to be computed.
int read_merged(const dao::Recordset& row, const Module_database::ReadingFacts& facts, ReadingKey key,
                const Frequencies& frequencies, StoredReading& merged) {
  if (row.get_long("FileID") < 0 && row.get_single("SampleRate") == 0.0F) {
    merged = Module_database::read_reading(row);
    if (frequencies_are_positive(merged.curve)) {
      facts.add_to(merged);
      return 0;
    }
  }
  key.station = row.get_double("Station");
  key.scan_rate = 0.0F;
  return get_reduced_reading(reduction_merged, AllowRaw::yes, key, frequencies, merged);
}

void fill_column(const StoredReading& merged, const std::vector<float>& frequencies, ProfileColumn& column) {
  const Module_database::Curve& curve = merged.curve;
  column.ID = merged.ID;
  column.UseReading = merged.UseReading;
  column.UseResistivity = merged.UseResistivity;
  column.UsePhase = merged.UsePhase;
  column.ResOffset = merged.ResOffset;
  column.resistivity.assign(frequencies.size(), no_data);
  column.phase.assign(frequencies.size(), no_data);
  column.mask.assign(frequencies.size(), {});
  column.errors.assign(frequencies.size(), {});
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
    column.errors[at] = {point_error(merged, Module_database::field_resistivity, i),
                         point_error(merged, Module_database::field_phase, i)};
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

int load_columns(const ReadingKey& key, const Frequencies& frequencies, ProfileDataSet& data) {
  const std::string criteria =
      "LineNumber = " + dao::text_literal(key.line) + " AND " + kind_criteria(reduction_merged, key);
  const Module_database::ReadingFacts facts(criteria);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY Station,FileID");
  std::optional<double> last_station;
  for (; !rows.eof(); rows.move_next()) {
    const double station = rows.get_double("Station");
    if (last_station && !(station > *last_station)) {
      continue;
    }
    last_station = station;
    StoredReading merged;
    if (read_merged(rows, facts, key, frequencies, merged) != 0) {
      return -1;
    }
    if (merged.ID == 0) {
      continue;
    }
    ProfileColumn& column = data.columns.emplace_back();
    column.StationID = rows.get_long("StationID");
    column.station = station;
    fill_column(merged, data.frequencies, column);
  }
  return 0;
}

}  // namespace

int load_profile_data(const ReadingKey& key, const Frequencies& frequencies, ProfileDataSet& data) {
  data = {};
  data.key = key;
  if (frequencies.empty()) {
    return 0;
  }
  data.frequencies = frequencies.list;
  const int status = trap_errors("An error occurred while generating the profile data: ",
                                 [&] { return load_columns(key, frequencies, data); });
  find_extents(data);
  return status;
}

void store_profile_column(ProfileDataSet& data, std::size_t column_index, const StoredReading& merged) {
  fill_column(merged, data.frequencies, data.columns[column_index]);
  find_extents(data);
}

std::int32_t find_profile_column(const ProfileDataSet& data, double station) {
  const auto found = std::ranges::find(data.columns, station, &ProfileColumn::station);
  return found == data.columns.end() ? -1 : static_cast<std::int32_t>(found - data.columns.begin());
}

}  // namespace Module_averaged_data
