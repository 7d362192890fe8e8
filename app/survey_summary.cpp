#include "app/survey_summary.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

#include "database/survey_database.h"

namespace Module_Brenlox {

namespace {

using GroupKey = std::tuple<std::string, std::int32_t, std::int32_t, float, float>;
using StationGroups = std::map<GroupKey, ReadingGroup>;

GroupKey key_of(const ReadingGroup& group) {
  return {group.data_type, group.reference_type, group.reduction_type, group.dipole, group.scan_rate};
}

void count_reading(StationGroups& groups, const ReadingGroup& reading, bool used, std::int32_t frequencies) {
  const auto [place, is_new] = groups.try_emplace(key_of(reading), reading);
  ReadingGroup& group = place->second;
  group.readings += 1;
  group.used_readings += used ? 1 : 0;
  group.fewest_frequencies = is_new ? frequencies : std::min(group.fewest_frequencies, frequencies);
  group.most_frequencies = std::max(group.most_frequencies, frequencies);
}

std::map<std::int32_t, StationGroups> readings_by_station() {
  std::map<std::int32_t, StationGroups> by_station;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT "
      "StationID,DataType,ReferenceType,ReductionType,DipoleLength,SampleRate,UseReading,NumFrequencies "
      "FROM ReadingsDataTable");
  for (; !rows.eof(); rows.move_next()) {
    ReadingGroup reading;
    reading.data_type = rows.get_text("DataType");
    reading.reference_type = rows.get_long("ReferenceType");
    reading.reduction_type = rows.get_long("ReductionType");
    reading.dipole = rows.get_single("DipoleLength");
    reading.scan_rate = rows.get_single("SampleRate");
    count_reading(by_station[rows.get_long("StationID")], reading, rows.get_bit("UseReading"),
                  rows.get_long("NumFrequencies"));
  }
  return by_station;
}

std::vector<LineSummary> lines_with_stations(const std::map<std::int32_t, StationGroups>& readings) {
  std::vector<LineSummary> lines;
  // Lines of one number on either side of the origin (200E, 200W) must not mix.
  dao::Recordset stations = Module_database::open_survey().database.open_recordset(
      "SELECT ID,SurveyLine,Station FROM StationsTable ORDER BY Val(SurveyLine),SurveyLine,Station");
  for (; !stations.eof(); stations.move_next()) {
    const std::string line = stations.get_text("SurveyLine");
    if (lines.empty() || lines.back().line != line) {
      lines.push_back({line, {}});
    }
    StationSummary& station = lines.back().stations.emplace_back();
    station.station = stations.get_double("Station");
    if (const auto found = readings.find(stations.get_long("ID")); found != readings.end()) {
      for (const auto& [key, group] : found->second) {
        station.groups.push_back(group);
      }
    }
  }
  return lines;
}

void add_totals(const StationGroups& groups, SurveySummary& summary) {
  for (const auto& [key, group] : groups) {
    if (group.reduction_type >= 0 && group.reduction_type <= 2) {
      summary.readings[static_cast<std::size_t>(group.reduction_type)] += group.readings;
    }
  }
}

template <class T, class Field>
std::vector<T> distinct(const std::map<std::int32_t, StationGroups>& readings, Field&& field) {
  std::set<T> values;
  for (const auto& [station, groups] : readings) {
    for (const auto& [key, group] : groups) {
      if (group.reduction_type !=
          2) {  // a merged curve has no scan rate, and its other keys stand in its parts
        values.insert(field(group));
      }
    }
  }
  return {values.begin(), values.end()};
}

}  // namespace

std::int32_t StationSummary::readings(std::int32_t reduction_type) const {
  return std::accumulate(groups.begin(), groups.end(), 0, [&](std::int32_t sum, const ReadingGroup& group) {
    return sum + (group.reduction_type == reduction_type ? group.readings : 0);
  });
}

std::int32_t SurveySummary::station_count() const {
  return std::accumulate(lines.begin(), lines.end(), 0, [](std::int32_t sum, const LineSummary& line) {
    return sum + static_cast<std::int32_t>(line.stations.size());
  });
}

SurveySummary survey_summary() {
  const auto readings = readings_by_station();
  SurveySummary summary;
  summary.lines = lines_with_stations(readings);
  summary.files =
      Module_database::open_survey().database.open_recordset("SELECT ID FROM FileTable").record_count();
  for (const auto& [station, groups] : readings) {
    add_totals(groups, summary);
  }
  summary.reference_types =
      distinct<std::int32_t>(readings, [](const ReadingGroup& group) { return group.reference_type; });
  summary.data_types =
      distinct<std::string>(readings, [](const ReadingGroup& group) { return group.data_type; });
  summary.dipoles = distinct<float>(readings, [](const ReadingGroup& group) { return group.dipole; });
  summary.scan_rates = distinct<float>(readings, [](const ReadingGroup& group) { return group.scan_rate; });
  return summary;
}

std::string reference_type_name(std::int32_t reference_type) {
  switch (reference_type) {
    case 0:
      return "Not Remote Ref";
    case 1:
      return "Remote Ref";
    default:
      return "Cross Ref";
  }
}

std::string reduction_type_name(std::int32_t reduction_type) {
  switch (reduction_type) {
    case 0:
      return "Raw";
    case 1:
      return "Averaged";
    default:
      return "Merged";
  }
}

}  // namespace Module_Brenlox
