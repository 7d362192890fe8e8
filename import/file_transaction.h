// file_transaction.h: one file of an import, stored as a whole.
#pragma once
#include <string_view>

#include "import/readers/field_reader.h"
#include "import/readers/reader_table.h"

namespace Module_data_file {

inline constexpr std::string_view import_failed = "An error occurred while importing the data file: ";

/// Reads one file as one transaction. The readings of an earlier import of the file are replaced only when
/// all new ones have been stored; what the file's failure was is in its report.
/// @return false if the survey takes no more files; the user has seen why
[[nodiscard]] bool import_in_transaction(FieldReader read, FileTask& task);

}  // namespace Module_data_file
