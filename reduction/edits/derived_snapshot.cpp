#include "reduction/edits/derived_snapshot.h"

#include <string>

#include "core/number_text.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

using Module_Brenlox::UndoDerived;
using Module_Brenlox::UndoReduction;

namespace {

std::string average_criteria(const StationRows& place, const ReadingKey& key) {
  return key_criteria("FileID<0", place.StationID, "ReductionType=1", key);
}

std::string merged_criteria(const StationRows& place, ReadingKey key) {
  key.scan_rate = 0.0F;
  return key_criteria("FileID<0", place.StationID, "ReductionType=2", key);
}

Module_Brenlox::UndoFacts facts_of(std::int32_t ReadingID) {
  const Module_database::FactsRow row = Module_database::find_facts(ReadingID);
  return {row.ID, row.errors, row.axes.EyTurned, row.axes.HxAzimuth};
}

void put_back(std::int32_t ReadingID, const Module_Brenlox::UndoFacts& facts) {
  Module_database::put_back_facts(ReadingID, {facts.id, facts.errors, {facts.ey_turned, facts.hx_azimuth}});
}

UndoDerived derived_at(const std::string& criteria) {
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first(criteria);
  if (rows.no_match()) {
    return {};
  }
  return {rows.get_long("ID"),
          {rows.get_bit("UseReading"), rows.get_bit("UseResistivity"), rows.get_bit("UsePhase")},
          {rows.get_long("NumFrequencies"), rows.get_binary("MaskBinary")},
          rows.get_single("ResOffset"),
          rows.get_single("PhaseOffset"),
          rows.get_binary("FreqBinary"),
          rows.get_binary("DataBinary"),
          facts_of(rows.get_long("ID"))};
}

void write_edits(dao::Recordset& row, const UndoDerived& earlier) {
  row.set_bit("UseReading", earlier.flags.use_reading);
  row.set_bit("UseResistivity", earlier.flags.use_resistivity);
  row.set_bit("UsePhase", earlier.flags.use_phase);
  row.set_single("ResOffset", earlier.res_offset);
  row.set_single("PhaseOffset", earlier.phase_offset);
  row.set_binary("MaskBinary", earlier.mask.mask_bytes);
}

void write_curve_bytes(dao::Recordset& row, const UndoDerived& earlier) {
  row.set_long("NumFrequencies", earlier.mask.frequency_count);
  row.set_binary("FreqBinary", earlier.frequency_bytes);
  row.set_binary("DataBinary", earlier.data_bytes);
}

void restore(const UndoDerived& earlier, const std::string& criteria, StoredReading& computed) {
  if (earlier.id == 0) {
    Module_database::delete_readings(criteria);
    computed = {};
    return;
  }
  dao::Recordset& row = Module_database::open_survey().readings;
  row.find_first("ID = " + format_number(earlier.id, "0"));
  if (row.no_match() ||
      (computed.ID != 0 && row.get_long("NumFrequencies") != earlier.mask.frequency_count)) {
    return;
  }
  row.edit();
  write_edits(row, earlier);
  if (computed.ID == 0 && !earlier.data_bytes.empty()) {
    write_curve_bytes(row, earlier);
  }
  row.update();
  put_back(earlier.id, earlier.facts);
  row.find_first("ID = " + format_number(earlier.id, "0"));
  computed = Module_database::read_reading(row);
  Module_database::read_facts(computed);
}

}  // namespace

UndoReduction snapshot_of(const StationRows& place, const ReadingKey& key) {
  return {derived_at(average_criteria(place, key)), derived_at(merged_criteria(place, key))};
}

void restore_average(const UndoReduction& earlier, const StationRows& place, const ReadingKey& key,
                     StoredReading& computed) {
  restore(earlier.average, average_criteria(place, key), computed);
}

void restore_merged(const UndoReduction& earlier, const StationRows& place, const ReadingKey& key,
                    StoredReading& computed) {
  restore(earlier.merged, merged_criteria(place, key), computed);
}

}  // namespace Module_averaged_data
