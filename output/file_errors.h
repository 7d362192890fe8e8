// file_errors.h: lines whose only errors are those of their files, and the hint at them.
#pragma once
#include <string>

#include "database/reading.h"

namespace Module_output {

/// Whether the merged curves of a line carry errors of their files and none of them has a deviation of
/// repeats, so that without the errors of the files the floors alone would rule. Throws dao::Error.
bool only_files_have_errors(const Module_database::LineSelection& line);

/// What a window says beside the choice of errors while it leaves those of the files out: a sentence for the
/// first window that asks about such a line of a survey, nothing for any later one while the program runs.
/// Empty as well where the line can't be read: whoever uses its curves tells that.
std::string file_errors_hint(const Module_database::LineSelection& line);

}  // namespace Module_output
