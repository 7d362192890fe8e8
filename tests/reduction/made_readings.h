// made_readings.h: readings with round numbers, and their way into an open survey.
#pragma once
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "database/frequency_store.h"
#include "database/reading.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "database/survey_database.h"

namespace made {

using Module_database::ReadingKey;
using Module_database::StoredReading;

struct Point {
  float frequency;    // Hz
  float resistivity;  // ohm-m
  float phase;        // degrees
};

/// A reading of these points: nothing masked, fields 3 to 20 hold 1000 field + frequency, which no mean of
/// resistivities or phases can be mistaken for.
inline StoredReading reading(const std::vector<Point>& points) {
  StoredReading made;
  made.curve.assign(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    made.curve.frequencies[i] = points[i].frequency;
    for (int field = 3; field <= Module_database::field_count; ++field) {
      made.curve.value(field, i) = 1000.0F * static_cast<float>(field) + points[i].frequency;
    }
    made.curve.value(Module_database::field_resistivity, i) = points[i].resistivity;
    made.curve.value(Module_database::field_phase, i) = points[i].phase;
    made.curve.counts_at(Module_database::field_resistivity, i) = 1;
    made.curve.counts_at(Module_database::field_phase, i) = 1;
  }
  return made;
}

/// Key and kind of a stored row.
inline ReadingKey key(float scan_rate = 256.0F, double station = 100.0) {
  return {"200E", station, 0, scan_rate, "ExHy", 50.0F};
}

/// The same errors, of resistivity in ohm-m and of phase in degrees, at all points of a reading.
inline StoredReading with_errors(StoredReading made, float of_resistivity, float of_phase) {
  for (std::size_t i = 0; i < made.curve.count(); ++i) {
    made.curve.error_at(Module_database::field_resistivity, i) = of_resistivity;
    made.curve.error_at(Module_database::field_phase, i) = of_phase;
  }
  return made;
}

/// Stores a reading with its facts as a row of its own, as an import does. @return its ID
inline std::int32_t store(const ReadingKey& key, std::int32_t event, const StoredReading& reading,
                          std::int32_t reduction = 0, std::int32_t FileID = 7) {
  const auto place =
      Module_database::find_station(Module_database::StationSearch::create, key.line, key.station);
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.add_new();
  rows.set_long("FileID", FileID);
  rows.set_long("StationID", place.StationID);
  rows.set_long("LocationID", place.LocationID);
  rows.set_text("LineNumber", key.line);
  rows.set_double("Station", key.station);
  rows.set_long("EventNumber", event);
  rows.set_long("ReferenceType", key.reference_type);
  rows.set_long("ReductionType", reduction);
  rows.set_text("DataType", key.data_type);
  rows.set_single("DipoleLength", key.dipole);
  rows.set_single("SampleRate", key.scan_rate);
  rows.set_single("ResOffset", reading.ResOffset);
  rows.set_single("PhaseOffset", reading.PhaseOffset);
  rows.set_single("MergeFrequency", -1.0F);
  rows.set_bit("UseReading", reading.UseReading);
  rows.set_bit("UseResistivity", reading.UseResistivity);
  rows.set_bit("UsePhase", reading.UsePhase);
  Module_database::write_curve(rows, reading.curve);
  rows.update();
  (void)Module_database::add_reading_frequencies(key.reference_type, key.scan_rate,
                                                 reading.curve.frequencies);
  const dao::Recordset newest = Module_database::open_survey().database.open_recordset(
      "SELECT ID FROM ReadingsDataTable ORDER BY ID DESC");
  Module_database::write_facts(newest.get_long("ID"), reading.curve, reading.axes);
  return newest.get_long("ID");
}

/// The stored list of a reference type.
inline Frequencies frequencies(std::int32_t reference_type = 0) {
  auto list = Module_database::load_reference_frequencies(reference_type);
  EXPECT_TRUE(list.has_value());
  return std::move(list).value_or(Frequencies{});
}

/// A recordset standing on the row with this ID.
inline dao::Recordset row(std::int32_t ID) {
  return Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE ID = " + std::to_string(ID));
}

}  // namespace made
