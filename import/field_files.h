// field_files.h: the field files among what somebody hands over.
#pragma once
#include <string>
#include <vector>

#include "import/proposals/scanned_file.h"

namespace Module_data_file {

/// Whether a file that a search has found is worth a place in a list: one named as EDI, or of a known kind.
/// Any text may have what fixed columns begin with, so that these must give something. The .stn, .rf and .rp
/// beside the files of processing programs are none.
bool is_field_file(const ScannedFile& file);

/// The files that paths stand for, each once: a file itself, whatever is in it, and of a folder the files
/// below it that end in .edi or begin as a file of a known kind does, in natural order. Lets events run.
std::vector<std::string> field_files_of(const std::vector<std::string>& paths);

}  // namespace Module_data_file
