#include "reduction/derived_rows.h"

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/survey_database.h"

namespace Module_averaged_data {

using Module_database::ReadingKey;
using Module_database::StoredReading;

std::string key_criteria(std::string_view file_test, std::int32_t StationID, std::string_view reduction_test,
                         const ReadingKey& key) {
  return std::string(file_test) + " AND StationID = " + format_number(StationID, "0") + " AND " +
         std::string(reduction_test) + " AND ReferenceType = " + format_number(key.reference_type, "0") +
         " AND SampleRate = " + criterion_text(key.scan_rate) + " AND DataType ='" + key.data_type +
         "' AND DipoleLength = " + criterion_text(key.dipole);
}

std::optional<DerivedRow> find_derived_row(const std::string& criteria) {
  dao::Recordset& readings = Module_database::open_survey().readings;
  readings.find_first(criteria);
  if (readings.no_match()) {
    return std::nullopt;
  }
  DerivedRow row;
  row.edits.ID = readings.get_long("ID");
  row.NumFrequencies = readings.get_long("NumFrequencies");
  row.edits.UseReading = readings.get_bit("UseReading");
  row.edits.UseResistivity = readings.get_bit("UseResistivity");
  row.edits.UsePhase = readings.get_bit("UsePhase");
  const float offset = readings.get_single("ResOffset");
  row.edits.ResOffset = offset > 0.0F ? offset : 1.0F;
  row.edits.PhaseOffset = readings.get_single("PhaseOffset");
  const dao::Bytes mask = readings.get_binary("MaskBinary");
  if (mask.size() % sizeof(std::int32_t) == 0) {
    row.edits.curve.mask = Module_database::longs_from(mask);
  }
  return row;
}

void store_derived_row(const std::string& criteria, std::int32_t reduction, float merge_frequency,
                       const ReadingKey& key, const Module_database::StationRows& place, Overrides overrides,
                       StoredReading& reading) {
  dao::Recordset& readings = Module_database::open_survey().readings;
  const bool is_new = reading.ID == 0;
  if (is_new) {
    readings.add_new();
  } else {
    readings.find_first("ID = " + format_number(reading.ID, "0"));
    readings.edit();
  }
  readings.set_long("FileID", derived_file);
  readings.set_long("StationID", place.StationID);
  readings.set_long("LocationID", place.LocationID);
  readings.set_text("LineNumber", key.line);
  readings.set_double("Station", key.station);
  readings.set_long("EventNumber", 0);
  readings.set_long("ReferenceType", key.reference_type);
  readings.set_long("ReductionType", reduction);
  readings.set_text("DataType", key.data_type);
  readings.set_single("DipoleLength", key.dipole);
  readings.set_single("SampleRate", key.scan_rate);
  readings.set_single("MergeFrequency", merge_frequency);
  if (overrides == Overrides::write) {
    readings.set_bit("UseReading", reading.UseReading);
    readings.set_bit("UseResistivity", reading.UseResistivity);
    readings.set_bit("UsePhase", reading.UsePhase);
    readings.set_single("ResOffset", reading.ResOffset);
    readings.set_single("PhaseOffset", reading.PhaseOffset);
  }
  Module_database::write_curve(readings, reading.curve);
  readings.update();
  session().data_changed = true;
  if (is_new) {
    readings.requery();
    readings.find_first(criteria);
    reading.ID = readings.get_long("ID");
  }
  reading.FileID = derived_file;
}

}  // namespace Module_averaged_data
