// edi_mt_reader.h: EDI files of impedances, resistivities and phases into the survey.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads each section of the file; an import stores it as four readings, one for each tensor element. A
/// FieldReader. EventNumber of the record and the count of stations run on from section to section.
[[nodiscard]] int read_edi_mt(FileTask& task);

/// What the user should know of a file before choosing how to import it.
struct EdiTraits {
  std::int32_t sections = 0;
  std::optional<std::string> first_sectid;
  bool impedances_only = false;  // has impedances but neither resistivities nor phases
  bool all_yx_phases_negative = false;
};

/// Reads a file through without a record or report of it. Throws std::runtime_error if it can't be read.
EdiTraits examine_edi_mt(const std::string& file);

}  // namespace Module_data_file
