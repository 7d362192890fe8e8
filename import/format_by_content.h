// format_by_content.h: which of the exchange formats a file is, by what stands at its beginning.
//
// Their names tell little: J files end in .j, .dat or .txt, averages in whatever a program likes.
#pragma once
#include <string>

#include "import/file_formats.h"

namespace Module_data_file {

/// EMTF XML, Z file, J format, Zonge average or table of curves; format_unknown if the first lines of the
/// file show none of them. Looks no farther than some ten thousand bytes, unless a line is longer. Throws
/// std::runtime_error if the file can't be read.
FileFormat exchange_format_of(const std::string& file);

}  // namespace Module_data_file
