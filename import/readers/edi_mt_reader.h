// edi_mt_reader.h: EDI files of impedances, resistivities and phases into the survey.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

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

}  // namespace Module_data_file
