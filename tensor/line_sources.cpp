#include "tensor/line_sources.h"

#include <string>
#include <utility>

#include "core/number_text.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"

namespace Module_tensor {

namespace {

using Module_database::StoredReading;

/// Station and type of a merged curve.
using CurvePlace = std::pair<double, std::size_t>;

/// By scan rate, Hz.
using RateSettings = std::map<float, AverageSettings>;

using LineSettings = std::map<CurvePlace, RateSettings>;

/// Adds flags and offsets of averages that have none yet.
/// @param file_test  "FileID < 0" for those that were computed here
void add_settings(const std::string& criteria, const std::string& file_test, LineSettings& settings) {
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT Station,DataType,SampleRate,UseReading,UseResistivity,UsePhase,ResOffset,PhaseOffset FROM "
      "ReadingsDataTable WHERE " +
      criteria + " AND ReductionType = 1 AND " + file_test + " ORDER BY ID");
  for (; !rows.eof(); rows.move_next()) {
    if (const auto type = curve_type_index(rows.get_text("DataType"))) {
      const float factor = rows.get_single("ResOffset");
      settings[{rows.get_double("Station"), *type}].try_emplace(
          rows.get_single("SampleRate"),
          AverageSettings{rows.get_bit("UseReading"), rows.get_bit("UseResistivity"),
                          rows.get_bit("UsePhase"), factor > 0.0F ? factor : 1.0F,
                          rows.get_single("PhaseOffset")});
    }
  }
}

class LineSums {
 public:
  /// Adds the readings that the criteria find.
  /// @param is_wanted  by place and scan rate
  template <class IsWanted>
  void add(const std::string& criteria, const FrequenciesOf& frequencies_of, const IsWanted& is_wanted) {
    const Module_database::ReadingFacts facts(criteria);
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY Station,SampleRate,EventNumber,ID");
    for (; !rows.eof(); rows.move_next()) {
      const auto type = curve_type_index(rows.get_text("DataType"));
      const double station = rows.get_double("Station");
      const auto frequencies = type ? frequencies_of(station, *type) : std::span<const float>();
      const float scan_rate = rows.get_single("SampleRate");
      if (frequencies.empty() || !rows.get_bit("UseReading") ||
          !is_wanted(CurvePlace{station, *type}, scan_rate)) {
        continue;
      }
      StoredReading reading = Module_database::read_reading(rows);
      facts.add_to(reading);
      curves_[{station, *type}].add(scan_rate, reading, frequencies);
    }
  }

  [[nodiscard]] const std::map<CurvePlace, SourceSums>& curves() const { return curves_; }

 private:
  std::map<CurvePlace, SourceSums> curves_;
};

}  // namespace

std::map<double, StationSources> read_sources(const LineChoice& choice, std::optional<double> station,
                                              const FrequenciesOf& frequencies_of) {
  const std::string criteria =
      choice.criteria() + (station ? " AND Station = " + criterion_text(*station) : std::string());
  LineSettings settings;
  add_settings(criteria, "FileID < 0", settings);
  LineSums sums;
  sums.add(criteria + " AND FileID > 0 AND ReductionType = 0", frequencies_of,
           [](const CurvePlace&, float) { return true; });
  // A curve that came averaged stands where there is nothing to average.
  sums.add(criteria + " AND FileID > 0 AND ReductionType = 1", frequencies_of,
           [&](const CurvePlace& place, float scan_rate) {
             const auto of_curve = settings.find(place);
             return of_curve == settings.end() || !of_curve->second.contains(scan_rate);
           });
  add_settings(criteria, "FileID > 0", settings);
  std::map<double, StationSources> sources;
  for (const auto& [place, curve] : sums.curves()) {
    const auto found = settings.find(place);
    sources[place.first][place.second] = curve.finish(
        found == settings.end() ? RateSettings() : found->second, frequencies_of(place.first, place.second));
  }
  return sources;
}

}  // namespace Module_tensor
