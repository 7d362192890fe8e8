// made_line.h: a line of stations with repeats at two scan rates, in an open survey and selected.
#pragma once
#include <string>

#include <gtest/gtest.h>

#include "reduction/averages.h"
#include "reduction/data_sets/curve_parts.h"
#include "tests/reduction/made_readings.h"

namespace made {

inline constexpr int line_repeats = 4;

/// A repeat's points; every station and event differs a little, so that no two means are the same by chance.
inline StoredReading repeat_of(double station, int event, bool fast) {
  std::vector<Point> points;
  for (const float frequency : fast ? std::vector<float>{8.0F, 16.0F, 32.0F, 64.0F}
                                    : std::vector<float>{1.0F, 2.0F, 4.0F, 8.0F, 16.0F}) {
    points.push_back({frequency,
                      100.0F + static_cast<float>(station) / 10.0F + static_cast<float>(event) + frequency,
                      40.0F + static_cast<float>(event)});
  }
  return reading(points);
}

/// Stations 100, 200, ... of line 200E, each with four repeats at 64 and 256 Hz, reduced; the session's
/// arrays tell of them, and the first one is selected at the lower scan rate.
inline void store_line(int stations) {
  SessionState& state = session();
  for (int s = 1; s <= stations; ++s) {
    const double station = 100.0 * s;
    for (const bool fast : {false, true}) {
      const ReadingKey key = made::key(fast ? 256.0F : 64.0F, station);
      for (int event = 1; event <= line_repeats; ++event) {
        store(key, event, repeat_of(station, event, fast));
      }
      StoredReading average;
      EXPECT_EQ(Module_averaged_data::average_repeats(key, made::frequencies(), average), 0);
    }
    StoredReading merged;
    EXPECT_EQ(Module_averaged_data::merge_scan_rates(made::key(0.0F, station), made::frequencies(), merged),
              0);
    const auto rows = Module_database::find_station(Module_database::StationSearch::look_up, "200E", station);
    state.station_id.push_back(rows.StationID);
    state.station_value.push_back(station);
    state.station_line.emplace_back("200E");
    state.station_table.push_back({200.0, station, 0.0, 0.0, 0.0});
    state.line_of_station.push_back(1);
  }
  state.station_count = stations;
  state.line_count = 1;
  state.first_station_of_line = {1, stations + 1};
  state.current_line = "200E";
  state.current_line_index = 1;
  state.current_station_index = 1;
  state.current_profile_column = 1;
  state.current_station = 100.0;
  state.current_reference_type = 0;
  state.current_data_type = "ExHy";
  state.current_dipole = 50.0F;
  state.current_scan_rate = 64.0;
  EXPECT_EQ(Module_database::load_selected_frequencies(), 0);
}

/// Everything in the table of what is known of readings, byte for byte, as text.
inline std::string whole_facts_table() {
  std::string all;
  dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT * FROM ReadingFactsTable ORDER BY ID");
  for (; !rows.eof(); rows.move_next()) {
    for (const char* field : {"ID", "ReadingID", "NumFrequencies", "EyTurned"}) {
      all += (rows.is_null(field) ? "null" : std::to_string(rows.get_long(field))) + ' ';
    }
    all += rows.is_null("HxAzimuth") ? "null" : std::to_string(rows.get_single("HxAzimuth"));
    for (const std::byte byte : rows.get_binary("ErrorBinary")) {
      all += static_cast<char>(byte);
    }
    all += '\n';
  }
  return all;
}

/// Everything in the readings table, byte for byte, and in that of what is known of them, as text.
inline std::string whole_readings_table() {
  std::string all;
  dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable ORDER BY ID");
  for (; !rows.eof(); rows.move_next()) {
    all += rows.get_text("LineNumber") + ' ' + rows.get_text("DataType") + ' ' +
           std::to_string(rows.get_double("Station")) + ' ';
    for (const char* field : {"ID", "FileID", "StationID", "LocationID", "EventNumber", "ReferenceType",
                              "ReductionType", "NumFrequencies", "NumFields"}) {
      all += std::to_string(rows.get_long(field)) + ' ';
    }
    for (const char* field : {"DipoleLength", "SampleRate", "ResOffset", "PhaseOffset", "MergeFrequency"}) {
      all += std::to_string(rows.get_single(field)) + ' ';
    }
    for (const char* field : {"UseReading", "UseResistivity", "UsePhase"}) {
      all += rows.get_bit(field) ? '1' : '0';
    }
    for (const char* field : {"FreqBinary", "DataBinary", "MaskBinary"}) {
      for (const std::byte byte : rows.get_binary(field)) {
        all += static_cast<char>(byte);
      }
    }
    all += '\n';
  }
  return all + whole_facts_table();
}

}  // namespace made
