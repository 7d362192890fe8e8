#include "reduction/stored_keys.h"

#include <string>

#include "core/number_text.h"
#include "database/survey_database.h"
#include "reduction/derived_rows.h"

namespace Module_averaged_data {

using Module_database::ReadingKey;

namespace {

/// Names the damaged rows; the keys alone don't say which they are.
void note_damaged_rows(const std::string& condition, SkippedGroups& skipped) {
  dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable" + condition);
  for (; !rows.eof(); rows.move_next()) {
    try {
      (void)key_of_row(rows);
    } catch (const dao::Error& damage) {
      skipped.note(damage.what());
    }
  }
}

}  // namespace

std::vector<ReadingKey> stored_keys(std::int32_t reduction, ScanRate scan_rate, SkippedGroups& skipped) {
  const bool with_rate = scan_rate == ScanRate::part_of_key;
  const std::string condition = " WHERE ReductionType=" + format_number(reduction, "0");
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      std::string("SELECT DISTINCT LineNumber,Station,ReferenceType,") + (with_rate ? "SampleRate," : "") +
      "DataType,DipoleLength FROM ReadingsDataTable" + condition);
  std::vector<ReadingKey> keys;
  bool all_sound = true;
  for (; !rows.eof(); rows.move_next()) {
    try {
      keys.push_back({rows.get_text("LineNumber"), rows.get_double("Station"), rows.get_long("ReferenceType"),
                      with_rate ? rows.get_single("SampleRate") : 0.0F, rows.get_text("DataType"),
                      rows.get_single("DipoleLength")});
    } catch (const dao::Error&) {
      all_sound = false;
    }
  }
  if (!all_sound) {
    note_damaged_rows(condition, skipped);
  }
  return keys;
}

}  // namespace Module_averaged_data
