// import_proposals.h: what the files of an import propose, and its plan, on the command line.
#pragma once
#include "batch/import_options.h"
#include "import/proposals/import_request.h"

namespace Batch {

using Module_data_file::FoundFiles;
using Module_data_file::PlannedImport;

void print_proposals(const PlannedImport& planned, const FoundFiles& files);

/// Tells of rows whose station or place can't be what the files mean. What the import's report tells is left
/// to it.
void print_plan_problems(const PlannedImport& planned);

/// Prints proposals and plan and stores nothing. @return 0, or -1 after a message
int print_plan(const ImportOptions& options, const FoundFiles& files);

}  // namespace Batch
