// fixed_column_reader.h: processed tensor impedances in fixed columns into the survey.
#pragma once
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads the file of a task; an import stores it as four readings, one for each tensor element. A
/// FieldReader. A file whose last frequency is not a quarter of the record's scan rate gives nothing; the
/// report says so.
[[nodiscard]] int read_fixed_columns(FileTask& task);

}  // namespace Module_data_file
