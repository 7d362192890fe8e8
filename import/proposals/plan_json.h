// plan_json.h: proposals and plan of an import for other programs.
#pragma once
#include <cstddef>
#include <span>
#include <string>

#include "import/import_plan.h"
#include "import/proposals/proposals.h"

namespace Module_data_file {

/// {"proposals": [{what, value, why}], "files_left_out", "rows": [...]}, UTF-8, the rows in the order of the
/// files.
/// @param files_left_out that were found in folders and are no field files
std::string plan_as_json(const ImportPlan& plan, std::span<const Proposal> proposals,
                         std::size_t files_left_out);

}  // namespace Module_data_file
