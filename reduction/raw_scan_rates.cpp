#include "reduction/raw_scan_rates.h"

#include <string>

#include "core/number_text.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

namespace Module_averaged_data {

std::vector<float> raw_scan_rates(const Module_database::ReadingKey& key, std::int32_t StationID) {
  std::vector<float> scan_rates;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT SampleRate FROM ReadingsDataTable WHERE StationID = " + format_number(StationID, "0") +
      " AND ReductionType=0 AND ReferenceType = " + format_number(key.reference_type, "0") +
      " AND DataType = " + dao::text_literal(key.data_type) +
      " AND DipoleLength = " + criterion_text(key.dipole));
  for (; !rows.eof(); rows.move_next()) {
    scan_rates.push_back(rows.get_single("SampleRate"));
  }
  return scan_rates;
}

}  // namespace Module_averaged_data
