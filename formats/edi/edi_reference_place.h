// edi_reference_place.h: latitude and longitude of the place where an EDI file was measured.
#pragma once
#include <optional>
#include <string>

#include "formats/file_report.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace formats::edi {

/// REFLAT and REFLONG of >=DEFINEMEAS; where one is absent or can't be read, LAT or LONG of >HEAD. Texts that
/// can't be read go into the report.
/// @return none if latitude or longitude is missing. Throws std::runtime_error if the file can't be read.
std::optional<numerics::geodesy::GeographicPlace> read_edi_reference_place(const std::string& file,
                                                                           FileReport& report);

}  // namespace formats::edi
