// edi_spectra_reader.h: EDI files of cross-spectra into the survey.
#pragma once
#include <optional>
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads each section of the file, estimating the impedance tensor of each frequency; an import stores it as
/// four readings, one for each tensor element. A FieldReader. A frequency without a tensor is left out, and a
/// section without any is not stored; the report says why.
[[nodiscard]] int read_edi_spectra(FileTask& task);

/// The SECTID of the first section. Throws std::runtime_error if the file can't be read.
std::optional<std::string> first_spectra_sectid(const std::string& file);

}  // namespace Module_data_file
