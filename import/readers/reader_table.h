// reader_table.h: which reader takes which field format.
#pragma once
#include <cstdint>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// The reader of a format (FileFormat); null if there is none.
FieldReader reader_of(std::int32_t file_format);

}  // namespace Module_data_file
