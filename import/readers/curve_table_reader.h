// curve_table_reader.h: tables of curves into the survey.
#pragma once
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads all curves of the table; an import stores each as one reading, or nothing where the table can't be
/// read to its end. A FieldReader. Lines and stations are those of the table, a table without lines has the
/// record's; a scan rate of the table goes before the record's, a reference type before that of the choices.
/// Events follow each other as 0, 1, ... of the file.
[[nodiscard]] int read_curves(FileTask& task);

}  // namespace Module_data_file
