#include "tensor/line_curves.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "core/trap_errors.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/survey_database.h"
#include "reduction/averages.h"
#include "reduction/derived_rows.h"

namespace Module_tensor {

using Module_averaged_data::AllowRaw;
using Module_database::reduction_merged;
using Module_database::StoredReading;

namespace {

/// The stations of the line and the types that each has readings of, raw ones and averages included.
using TypesOfStations = std::map<double, std::pair<std::int32_t, std::set<std::size_t>>>;

TypesOfStations types_of_stations(const LineChoice& choice) {
  TypesOfStations types;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT Station,StationID,DataType FROM ReadingsDataTable WHERE " + choice.criteria());
  for (; !rows.eof(); rows.move_next()) {
    if (const auto type = curve_type_index(rows.get_text("DataType"))) {
      auto& [StationID, of_station] = types[rows.get_double("Station")];
      StationID = rows.get_long("StationID");
      of_station.insert(*type);
    }
  }
  return types;
}

/// The merged curves that are stored.
void read_stored(const LineChoice& choice, std::map<double, StationCurves>& stations) {
  const std::string criteria = choice.criteria() + " AND ReductionType = 2 AND FileID < 0";
  const Module_database::ReadingFacts facts(criteria);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY Station,ID");
  for (; !rows.eof(); rows.move_next()) {
    const auto type = curve_type_index(rows.get_text("DataType"));
    const auto station = stations.find(rows.get_double("Station"));
    if (!type || station == stations.end() || rows.get_single("SampleRate") != 0.0F) {
      continue;
    }
    StoredReading& merged = station->second.merged[*type];
    if (merged.ID != 0) {
      continue;
    }
    merged = Module_database::read_reading(rows);
    if (Module_averaged_data::frequencies_are_positive(merged.curve)) {
      facts.add_to(merged);
    } else {
      merged = {};
    }
  }
}

/// Computes what isn't stored. @return 0, or -1 after a message
int compute_missing(const LineChoice& choice, const std::set<std::size_t>& types,
                    const Frequencies& frequencies, StationCurves& station) {
  for (const std::size_t type : types) {
    StoredReading& merged = station.merged[type];
    if (merged.ID == 0 &&
        Module_averaged_data::get_reduced_reading(reduction_merged, AllowRaw::yes,
                                                  choice.key(static_cast<CurveType>(type), station.station),
                                                  frequencies, merged) != 0) {
      return -1;
    }
  }
  return 0;
}

/// What the readings behind the curves of all these stations say, or of one of them.
void add_sources(const LineChoice& choice, std::optional<double> only, std::span<StationCurves> stations) {
  std::map<double, StationCurves*> by_number;
  for (StationCurves& station : stations) {
    by_number[station.station] = &station;
  }
  auto sources = read_sources(choice, only, [&](double station, std::size_t type) {
    const auto found = by_number.find(station);
    return found == by_number.end() ? std::span<const float>()
                                    : std::span<const float>(found->second->merged[type].curve.frequencies);
  });
  for (StationCurves& station : stations) {
    station.sources = std::move(sources[station.station]);
    for (std::size_t type = 0; type < curve_types.size(); ++type) {
      if (const StoredReading& merged = station.merged[type]; merged.FileID > 0) {  // it came merged
        SourceSums itself;
        itself.add(0.0F, merged, merged.curve.frequencies);
        station.sources[type] = itself.finish({}, merged.curve.frequencies);
      }
    }
  }
}

bool has_curve(const StationCurves& station) {
  return std::ranges::any_of(station.merged, [](const StoredReading& merged) { return merged.ID != 0; });
}

int load(const LineChoice& choice, const Frequencies& frequencies, LineCurves& curves) {
  const TypesOfStations types = types_of_stations(choice);
  std::map<double, StationCurves> stations;
  for (const auto& [station, of_station] : types) {
    StationCurves& added = stations[station];
    added.StationID = of_station.first;
    added.station = station;
  }
  for (const Module_database::Site& site : Module_database::sites_of_line(choice.line)) {
    if (const auto station = stations.find(site.station); station != stations.end()) {
      station->second.name = site.name;
    }
  }
  read_stored(choice, stations);
  for (auto& [station, loaded] : stations) {
    if (compute_missing(choice, types.at(station).second, frequencies, loaded) != 0) {
      return -1;
    }
    if (has_curve(loaded)) {
      curves.stations.push_back(std::move(loaded));
    }
  }
  add_sources(choice, std::nullopt, curves.stations);
  return 0;
}

constexpr std::string_view loading_failed = "An error occurred while reading the tensors of the line: ";

}  // namespace

int load_line_curves(const LineChoice& choice, const Frequencies& frequencies, LineCurves& curves) {
  curves = {};
  curves.choice = choice;
  curves.frequencies = frequencies.list;
  return trap_errors(loading_failed, [&] { return load(choice, frequencies, curves); });
}

int reload_station_curves(const LineChoice& choice, const Frequencies& frequencies, StationCurves& station) {
  return trap_errors(loading_failed, [&] {
    for (std::size_t type = 0; type < curve_types.size(); ++type) {
      if (Module_averaged_data::get_reduced_reading(reduction_merged, AllowRaw::yes,
                                                    choice.key(static_cast<CurveType>(type), station.station),
                                                    frequencies, station.merged[type]) != 0) {
        return -1;
      }
    }
    add_sources(choice, station.station, {&station, 1});
    return 0;
  });
}

}  // namespace Module_tensor
