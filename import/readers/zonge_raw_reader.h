// zonge_raw_reader.h: raw files of the receiver, with their file of station places, into the survey.
//
// The layout that is assumed is described in zonge_raw_parser.h.
#pragma once
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads the MT blocks of the file. A FieldReader. Each electric channel that has its magnetic field
/// is a reading ExHy or EyHx, at the base frequency as its scan rate, of the line that was chosen for the
/// file. A block with a fault is left out; the others are read. The report's account has what each block
/// holds. Without a file of stations nothing is read.
/// @return 0 when done; -1 after a message, or without a file of stations, which the report says
[[nodiscard]] int read_zonge_raw(FileTask& task);

}  // namespace Module_data_file
