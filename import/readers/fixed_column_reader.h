// fixed_column_reader.h: processed tensor impedances in fixed columns into the survey.
//
// Behind a head line a record of three lines, which count as one text, holds each frequency. Columns count
// from 1; each value is 10 columns wide.
#pragma once
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads the file into reading_record(); an import stores it as four readings, one for each tensor element. A
/// FieldReader. A file whose last frequency is not a quarter of the record's scan rate gives nothing; the
/// report says so.
[[nodiscard]] int read_fixed_columns(ImportMode mode, const std::string& file, FileReport& report,
                                     StoreNotes& notes, const FileProgress& progress = {});

}  // namespace Module_data_file
