#include "reduction/stored_keys.h"

#include <string>

#include "core/number_text.h"
#include "database/survey_database.h"

namespace Module_averaged_data {

using Module_database::ReadingKey;

std::vector<ReadingKey> stored_keys(std::int32_t reduction, ScanRate scan_rate) {
  const bool with_rate = scan_rate == ScanRate::part_of_key;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      std::string("SELECT DISTINCT LineNumber,Station,ReferenceType,") + (with_rate ? "SampleRate," : "") +
      "DataType,DipoleLength FROM ReadingsDataTable WHERE ReductionType=" + format_number(reduction, "0"));
  std::vector<ReadingKey> keys;
  for (; !rows.eof(); rows.move_next()) {
    ReadingKey& key = keys.emplace_back();
    key.line = rows.get_text("LineNumber");
    key.station = rows.get_double("Station");
    key.reference_type = rows.get_long("ReferenceType");
    if (with_rate) {
      key.scan_rate = rows.get_single("SampleRate");
    }
    key.data_type = rows.get_text("DataType");
    key.dipole = rows.get_single("DipoleLength");
  }
  return keys;
}

}  // namespace Module_averaged_data
