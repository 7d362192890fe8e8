// field_files.h: the field files among what somebody hands over.
#pragma once
#include <string>
#include <vector>

namespace Module_data_file {

/// The files that paths stand for, each once: a file itself, whatever is in it, and of a folder the files
/// below it that end in .edi or begin as a file of a known kind does, in natural order. Lets events run.
std::vector<std::string> field_files_of(const std::vector<std::string>& paths);

}  // namespace Module_data_file
