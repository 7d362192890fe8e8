// fixed_column_reader.h: processed tensor impedances in fixed columns into the survey.
#pragma once
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads the file of a task; an import stores it as four readings, one for each tensor element. A
/// FieldReader. A file whose last frequency is not a quarter of the record's scan rate gives nothing; the
/// report says so.
[[nodiscard]] int read_fixed_columns(FileTask& task);

/// Why a file with this last frequency (0: none) isn't stored at this scan rate, both Hz; empty if it is.
std::string fixed_columns_fault(double last_frequency, float scan_rate);

}  // namespace Module_data_file
