// edi_mt_reader.h: EDI files of impedances, resistivities and phases into the survey.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "import/import_report.h"
#include "import/import_run.h"
#include "import/store_blocks.h"

namespace Module_data_file {

/// Told the bytes read and the size of the file now and then.
using FileProgress = std::function<void(std::int64_t bytes_read, std::int64_t file_size)>;

/// Reads each section of the file into reading_record(); an import stores it as four readings, one for each
/// tensor element. A scan stores nothing. Both leave the stations met in the record's scan list and let
/// EventNumber and Station run on.
/// @return 0 when done, also if the file is cut short (the report says so); -1 after a message
[[nodiscard]] int read_edi_mt(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                              const FileProgress& progress = {});

}  // namespace Module_data_file
