#include "import/reading_record.h"

#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_data_file {

bool KeyOrder::operator()(const Module_database::ReadingKey& a, const Module_database::ReadingKey& b) const {
  const auto members = [](const Module_database::ReadingKey& key) {
    return std::make_tuple(upper_case(key.line), key.station, key.reference_type, key.scan_rate,
                           key.data_type, key.dipole);
  };
  return members(a) < members(b);
}

void start_file(ReadingRecord& record, std::size_t index) {
  ReadingRecord fresh;
  fresh.choices = std::move(record.choices);
  fresh.scan_list = std::move(record.scan_list);
  fresh.scanned = std::move(record.scanned);
  fresh.scanned_types = std::move(record.scanned_types);
  fresh.run = std::move(record.run);
  fresh.StationSpacing = static_cast<float>(numeric_value(fresh.choices.station_step));
  fresh.file_index = static_cast<std::int32_t>(index + 1);
  record = std::move(fresh);
}

void own_rows_of_file(ReadingRecord& record) {
  for (const auto& [event, ID] : record.file_rows.ID_of_event) {
    record.run.found.own_rows.insert(ID);
  }
  if (record.run.earlier_files) {
    record.run.earlier_files->take_out(record.file_rows, record.SurveyFile, record.DateCollected);
  }
}

}  // namespace Module_data_file
