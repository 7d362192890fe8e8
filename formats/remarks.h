// remarks.h: entries of a file's report, bounded in number and length.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "import/import_report.h"

namespace Module_data_file {

/// Notes something in the file that was left unused. Beyond the number kept for one file it is only counted.
void remark_ignored(FileReport& report, std::int64_t line, std::string text);

/// Notes something in the file that could not be read as it stands, likewise.
void remark_unreadable(FileReport& report, std::int64_t line, std::string text);

/// Adds a line to the account of the file. Beyond a number that fits into memory it is only counted.
void add_to_account(FileReport& report, std::string text);

/// Bytes of a field file as a report shows them: in apostrophes, as UTF-8, cut to a readable length.
std::string in_quotes(std::string_view bytes);

}  // namespace Module_data_file
