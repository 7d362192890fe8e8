// converted_place.h: the latitude and longitude that a file gives, on the survey's map.
#pragma once
#include <optional>
#include <string>

#include "formats/file_report.h"
#include "import/reading_record.h"

namespace Module_data_file {

/// The place of a file whose sections name sites, in the survey's projection: of an EDI file the reference
/// place of its head. Without one, or when the projection can't show it, the report says why. Throws
/// std::runtime_error if the file can't be read.
/// @param record has the file's format and, of a file of one site, what it holds
std::optional<MapPosition> converted_place(const std::string& file, const ReadingRecord& record,
                                           formats::FileReport& report);

/// After an import of a file with a converted place: reports sections that share the place, and a station
/// that was known before and keeps its own.
void remark_on_converted_place(const ReadingRecord& record, formats::FileReport& report);

}  // namespace Module_data_file
