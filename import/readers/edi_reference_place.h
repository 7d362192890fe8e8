// edi_reference_place.h: where an EDI file says that it was measured, and that place on the survey's map.
#pragma once
#include <optional>
#include <string>

#include "import/import_report.h"
#include "import/reading_record.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_data_file {

/// REFLAT and REFLONG of >=DEFINEMEAS; where one is absent or can't be read, LAT or LONG of >HEAD. Texts that
/// can't be read go into the report.
/// @return none if latitude or longitude is missing. Throws std::runtime_error if the file can't be read.
std::optional<numerics::geodesy::GeographicPlace> read_edi_reference_place(const std::string& file,
                                                                           FileReport& report);

/// The reference place of a file in the survey's projection. Without one, or when the projection can't show
/// it, the report says why. Throws likewise.
std::optional<MapPosition> converted_edi_place(const std::string& file, FileReport& report);

/// Notes after an import of a file with a converted place what a person would wonder at: sections that share
/// the place, a station that was known before and keeps its place.
void remark_on_converted_place(const ReadingRecord& record, FileReport& report);

}  // namespace Module_data_file
