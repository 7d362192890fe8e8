// em1dfm_reader.h: results of a one-dimensional frequency-domain electromagnetic program into the survey.
//
// These aren't magnetotelluric data: field 1 holds the in-phase and field 2 the quadrature value.
#pragma once
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads each station of the file; an import stores it as one reading "QP". A FieldReader. Stations follow
/// each other as events 0, 1, ... of the file.
[[nodiscard]] int read_em1dfm(FileTask& task);

}  // namespace Module_data_file
