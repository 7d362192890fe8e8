// em1dfm_reader.h: results of a one-dimensional frequency-domain electromagnetic program into the survey.
//
// Behind a first line "FREQUENCY DOMAIN EM DATA" a line "LINE name" begins a line, and
// "STATION <word> station X Y elevation m" a station of m lines, one for each frequency. These are no
// magnetotelluric data: field 1 holds the in-phase and field 2 the quadrature value.
#pragma once
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads each station of the file into reading_record(); an import stores it as one reading "QP". A
/// FieldReader. Stations follow each other as events 0, 1, ... of the file.
[[nodiscard]] int read_em1dfm(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                              const FileProgress& progress = {});

}  // namespace Module_data_file
