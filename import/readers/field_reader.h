// field_reader.h: the interface that the reader of every field format has to the import.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "import/import_report.h"
#include "import/store_blocks.h"

namespace Module_data_file {

enum class ImportMode { scan, import };

/// Told the bytes read and the size of the file now and then.
using FileProgress = std::function<void(std::int64_t bytes_read, std::int64_t file_size)>;

/// Reads a file into reading_record(); an import stores its readings, a scan stores nothing. Both leave the
/// stations met in the record's scan list, and in the report what was met and what could not be taken.
/// @return 0 when done, also if the file gave nothing (the report says why); -1 after a message
using FieldReader = int (*)(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                            const FileProgress& progress);

/// The reader of a format (FileFormat); null if there is none.
FieldReader reader_of(std::int32_t file_format);

}  // namespace Module_data_file
