// field_reader.h: what the import gives to the reader of a field format, and gets back.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/line_reader.h"
#include "formats/file_report.h"
#include "import/reading_record.h"
#include "import/store_blocks.h"

namespace Module_data_file {

enum class ImportMode { scan, import };

/// Called with the bytes read and the size of the file now and then.
using FileProgress = std::function<void(std::int64_t bytes_read, std::int64_t file_size)>;

/// One field file on its way into the survey. An import stores its readings, a scan stores nothing.
struct FileTask {
  ImportMode mode = ImportMode::scan;
  std::string file;             // path
  ReadingRecord& record;        // choices and header members are set; the reader fills the rest
  formats::FileReport& report;  // gets what the file holds and what could not be read
  StoreNotes& notes;
  FileProgress progress;  // may be empty
  // May be empty; called with the data type of each reading, which the record holds.
  std::function<void(std::string_view data_type)> reading_met = {};

  [[nodiscard]] bool is_import() const { return mode == ImportMode::import; }
  void show_progress(const LineReader& lines) const {
    if (progress) {
      progress(lines.bytes_read(), lines.file_size());
    }
  }
};

/// Reads the file of a task. A scan, too, adds the stations found to the record's scan list.
/// @return 0 when done, also if the file gave nothing (the report says why); -1 after a message
using FieldReader = int (*)(FileTask& task);

}  // namespace Module_data_file
