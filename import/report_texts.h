// report_texts.h: the report of an import in sentences, where there is no window for it.
#pragma once
#include <string>
#include <vector>

#include "import/import_report.h"
#include "import/readers/field_reader.h"
#include "import/report_groups.h"

namespace Module_data_file {

inline constexpr const char* import_stopped = "Stopped; what was stored by then is kept";

/// What needs an action, each kind in a text, with the option that would help. Files that gave nothing, or an
/// error on the way, are together if they have one reason.
std::vector<std::string> problem_texts(const std::vector<ReportGroup>& groups, const ImportReport& report);

/// What was read otherwise than it stands or left unused, with the number of remarks, a line for each kind.
std::vector<std::string> remark_texts(const std::vector<ReportGroup>& groups);

/// "12 files, 96 readings stored, 0 files without a reading or with an error", and in a second line how many
/// of them replaced readings.
std::string counts_text(const ImportReport& report, ImportMode mode);

}  // namespace Module_data_file
