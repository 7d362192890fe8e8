// edi_mt_reader.h: EDI files of impedances, resistivities and phases into the survey.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

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

/// What a person should know of a file before choosing how to import it.
struct EdiTraits {
  std::int32_t sections = 0;
  std::optional<std::string> first_sectid;
  bool impedances_only = false;  // has impedances but neither resistivities nor phases
  bool all_yx_phases_negative = false;
};

/// Reads a file through and leaves no trace of it anywhere. Throws std::runtime_error if it can't be read.
EdiTraits examine_edi_mt(const std::string& file);

/// The station that a SECTID names: its leading whole number, or that of its first run of digits; 0 without
/// one.
double sectid_station(std::string_view sectid, bool only_digits);

}  // namespace Module_data_file
