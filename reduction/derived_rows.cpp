#include "reduction/derived_rows.h"

#include <algorithm>
#include <cstring>

#include "core/number_text.h"
#include "core/session_state.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/computed_rows.h"

namespace Module_averaged_data {

using Module_database::Curve;
using Module_database::ReadingKey;
using Module_database::StoredReading;

namespace {

/// Takes the bytes of a column if they are as many as the array's.
template <class T>
bool take_bytes(const dao::Bytes& bytes, std::vector<T>& values) {
  if (bytes.size() != values.size() * sizeof(T)) {
    return false;
  }
  std::memcpy(values.data(), bytes.data(), bytes.size());
  return true;
}

/// Keeps the points with a frequency above 0.
Curve with_positive_frequencies(const Curve& curve) {
  Curve kept;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    if (curve.frequencies[index] > 0.0F) {
      kept.append(curve, index);
    }
  }
  return kept;
}

/// The curve of a derived row as far as it can be read: it is about to be computed again.
Curve curve_of(const dao::Recordset& row) {
  Curve curve;
  const dao::Bytes mask = row.get_binary("MaskBinary");
  const std::int32_t count = row.get_long("NumFrequencies");
  if (count < 1 ||
      mask.size() != static_cast<std::size_t>(count) * Module_database::mask_count * sizeof(std::int32_t)) {
    return curve;
  }
  curve.assign(static_cast<std::size_t>(count));
  (void)take_bytes(mask, curve.mask);
  (void)take_bytes(row.get_binary("DataBinary"), curve.data);
  if (!take_bytes(row.get_binary("FreqBinary"), curve.frequencies)) {
    std::ranges::fill(curve.frequencies, 1.0F);  // only that they are above 0 is asked
  }
  return frequencies_are_positive(curve) ? curve : with_positive_frequencies(curve);
}

}  // namespace

std::string key_criteria(std::string_view file_test, std::int32_t StationID, std::string_view reduction_test,
                         const ReadingKey& key) {
  return std::string(file_test) + " AND StationID = " + format_number(StationID, "0") + " AND " +
         std::string(reduction_test) + " AND ReferenceType = " + format_number(key.reference_type, "0") +
         " AND SampleRate = " + criterion_text(key.scan_rate) +
         " AND DataType = " + dao::text_literal(key.data_type) +
         " AND DipoleLength = " + criterion_text(key.dipole);
}

void drop_curves_without_readings(std::int32_t StationID) {
  const std::string of_station = "StationID = " + format_number(StationID, "0") + " AND FileID ";
  Module_database::delete_readings(of_station +
                                   "< 0 AND DataType NOT IN (SELECT DataType FROM ReadingsDataTable WHERE " +
                                   of_station + "> 0 AND ReductionType < 2)");
}

ReadingKey key_of_row(const dao::Recordset& row) {
  return {row.get_text("LineNumber"),   row.get_double("Station"), row.get_long("ReferenceType"),
          row.get_single("SampleRate"), row.get_text("DataType"),  row.get_single("DipoleLength")};
}

bool frequencies_are_positive(const Curve& curve) {
  return std::ranges::all_of(curve.frequencies, [](float frequency) { return frequency > 0.0F; });
}

std::optional<StoredReading> find_derived_row(const std::string& criteria) {
  dao::Recordset& readings = Module_database::open_survey().readings;
  readings.find_first(criteria);
  if (readings.no_match()) {
    return std::nullopt;
  }
  StoredReading stored;
  stored.ID = readings.get_long("ID");
  stored.UseReading = readings.get_bit("UseReading");
  stored.UseResistivity = readings.get_bit("UseResistivity");
  stored.UsePhase = readings.get_bit("UsePhase");
  const float offset = readings.get_single("ResOffset");
  stored.ResOffset = offset > 0.0F ? offset : 1.0F;
  stored.PhaseOffset = readings.get_single("PhaseOffset");
  stored.curve = curve_of(readings);
  return stored;
}

std::vector<std::int32_t> kept_mask(const Curve& stored, const Curve& computed) {
  std::vector<std::int32_t> mask = stored.mask;
  for (std::size_t index = 0; index < computed.count(); ++index) {
    for (const int field : {Module_database::field_resistivity, Module_database::field_phase}) {
      std::int32_t& kept = mask[index * Module_database::mask_count + static_cast<std::size_t>(field - 1)];
      if (kept == 0 && !stored.is_present(field, index) && computed.is_present(field, index)) {
        kept = 1;
      }
    }
  }
  return mask;
}

void store_derived_row(std::int32_t reduction, float merge_frequency, const ReadingKey& key,
                       const Module_database::StationRows& place, Overrides overrides,
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
  if (is_new) {  // a row that there was keeps its spelling of the line, so that an undo leaves no trace
    readings.set_text("LineNumber", key.line);
  }
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
    readings.go_to_added();
    reading.ID = readings.get_long("ID");
  }
  reading.FileID = derived_file;
  Module_database::write_facts(reading.ID, reading.curve, reading.axes);
}

}  // namespace Module_averaged_data
