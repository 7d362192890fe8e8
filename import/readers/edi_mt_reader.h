// edi_mt_reader.h: EDI files of impedances, resistivities and phases into the survey.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads each section of the file; an import stores it as four readings, one for each tensor element, and one
/// for each component of its tipper; a section of a tipper alone gives no tensor. A FieldReader. EventNumber
/// of the record and the count of stations run on from section to section.
[[nodiscard]] int read_edi_mt(FileTask& task);

}  // namespace Module_data_file
