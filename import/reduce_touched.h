// reduce_touched.h: averages and merged curves after an import.
#pragma once
#include <string_view>

#include "import/import_report.h"
#include "import/reading_record.h"

namespace Module_data_file {

inline constexpr std::string_view averaging_failed = "An error occurred while averaging the data: ";

/// Brings averages and merged curves of what was stored or replaced up to date. A stop doesn't end it:
/// readings without their curves would be seen nowhere. Groups that can't be reduced are skipped and told in
/// one message. Throws dao::Error.
void reduce_touched(const ReadingRecord& record, ImportReport& report);

}  // namespace Module_data_file
