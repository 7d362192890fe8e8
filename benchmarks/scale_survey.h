// scale_survey.h: a survey as large as a season's work: lines of 50 stations with four elements at 60
// frequencies, two scan rates and three repeats each, written by the survey's own store and reduced.
#pragma once
#include <array>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/session_state.h"
#include "database/frequency_store.h"
#include "database/reading.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "reduction/averages.h"

namespace scale_survey {

inline constexpr int stations_per_line = 50;
inline constexpr int frequency_count = 60;
inline constexpr int repeats = 3;
inline constexpr std::array<float, 2> scan_rates{256.0F, 4096.0F};  // Hz
inline constexpr std::array<std::string_view, 4> data_types{"ExHx", "ExHy", "EyHx", "EyHy"};
inline constexpr float dipole = 50.0F;          // m
inline constexpr double station_spacing = 100;  // m
inline constexpr int line_spacing = 200;        // m

inline void require(int status) {
  if (status != 0) {
    throw std::runtime_error("the survey could not be made");
  }
}

/// The name of a line, from 0: the northing at which its stations stand.
inline std::string line_name(int line) { return std::to_string(line_spacing * (line + 1)) + "E"; }

/// A curve over four decades; those of the higher scan rate begin where the others end, two decades higher.
inline Module_database::Curve curve(int seed, float scan_rate) {
  using namespace Module_database;
  Curve made;
  made.assign(frequency_count);
  for (std::size_t i = 0; i < frequency_count; ++i) {
    const double place = static_cast<double>(i) / frequency_count;
    const double wave = std::sin(6.0 * place + 0.01 * seed);
    made.frequencies[i] =
        static_cast<float>((scan_rate > 1000.0F ? 1.0 : 0.01) * std::pow(10.0, 4.0 * place));
    made.value(field_resistivity, i) = static_cast<float>(100.0 + 50.0 * wave);
    made.value(field_phase, i) = static_cast<float>(45.0 + 10.0 * wave);
    made.counts_at(field_resistivity, i) = made.counts_at(field_phase, i) = 1;
  }
  return made;
}

/// Stores the readings of a line, with a row in the file table for each event and scan rate of a station.
inline void store_line(int line) {
  using namespace Module_database;
  OpenSurvey& survey = open_survey();
  const std::string name = line_name(line);
  dao::Transaction transaction(survey.database);
  std::int32_t file = line * stations_per_line * repeats * static_cast<int>(scan_rates.size());
  for (int index = 1; index <= stations_per_line; ++index) {
    const double station = station_spacing * index;
    const StationRows place = find_station(StationSearch::create, name, station);
    for (const float rate : scan_rates) {
      for (int event = 1; event <= repeats; ++event) {
        ++file;
        survey.files.add_new();
        survey.files.set_text("SurveyFile", name + std::to_string(file) + ".edi");
        survey.files.set_text("LineNumber", name);
        survey.files.set_double("Station", station);
        survey.files.set_long("EventNumber", event);
        survey.files.set_long("ReferenceType", 0);
        survey.files.set_long("ReductionType", reduction_raw);
        survey.files.set_single("SampleRate", rate);
        survey.files.set_single("DipoleLength", dipole);
        survey.files.update();
        for (std::size_t type = 0; type < data_types.size(); ++type) {
          dao::Recordset& row = survey.readings;
          row.add_new();
          row.set_long("FileID", file);
          row.set_long("StationID", place.StationID);
          row.set_long("LocationID", place.LocationID);
          row.set_text("LineNumber", name);
          row.set_double("Station", station);
          row.set_long("EventNumber", event);
          row.set_long("ReferenceType", 0);
          row.set_long("ReductionType", reduction_raw);
          row.set_text("DataType", data_types[type]);
          row.set_single("DipoleLength", dipole);
          row.set_single("SampleRate", rate);
          row.set_single("ResOffset", 1.0F);
          row.set_single("PhaseOffset", 0.0F);
          row.set_single("MergeFrequency", -1.0F);
          row.set_bit("UseReading", true);
          row.set_bit("UseResistivity", true);
          row.set_bit("UsePhase", true);
          write_curve(row, curve(3 * file + 17 * static_cast<int>(type), rate));
          row.update();
        }
      }
    }
  }
  transaction.commit();
}

/// Makes a survey of so many lines at a path and closes it. 200 lines are 10,000 stations and 240,000
/// readings, with as many averages and merged curves as belong to them.
inline void make(const std::string& path, int lines) {
  reset_session_state();
  Module_database::reset_module();
  session().database_file = path;
  require(Module_database::create_database());
  require(Module_database::open_database());
  for (const float rate : scan_rates) {
    require(Module_database::add_reading_frequencies(0, rate, curve(0, rate).frequencies));
  }
  for (int line = 0; line < lines; ++line) {
    store_line(line);
  }
  require(Module_averaged_data::recalculate_merged());
  require(Module_database::close_database());
}

}  // namespace scale_survey
