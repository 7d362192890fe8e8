// edi_converted_place.h: the place that an EDI file gives, on the survey's map.
#pragma once
#include <optional>
#include <string>

#include "formats/file_report.h"
#include "import/reading_record.h"

namespace Module_data_file {

/// The reference place of a file in the survey's projection. Without one, or when the projection can't show
/// it, the report says why. Throws std::runtime_error if the file can't be read.
std::optional<MapPosition> converted_edi_place(const std::string& file, formats::FileReport& report);

/// After an import of a file with a converted place: reports sections that share the place, and a station
/// that was known before and keeps its own.
void remark_on_converted_place(const ReadingRecord& record, formats::FileReport& report);

}  // namespace Module_data_file
