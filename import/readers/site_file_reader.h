// site_file_reader.h: files of the transfer functions of one site, EMTF XML, Z files and J files, into the
// survey.
#pragma once
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Stores the file's site: a reading for each element of the tensor and each component of the tipper that the
/// file has. A FieldReader.
[[nodiscard]] int read_site(FileTask& task);

}  // namespace Module_data_file
