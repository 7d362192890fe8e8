// import_proposals.h: what the files of an import propose, and its plan, on the command line.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "batch/import_options.h"
#include "import/import_plan.h"
#include "import/proposals/proposals.h"

namespace Batch {

/// The files of an import after a look into them.
struct FoundFiles {
  std::vector<std::string> paths;
  std::vector<Module_data_file::ScannedFile> scanned;  // empty without a look
  std::size_t left_out = 0;  // that were found in folders of all kinds and are no field files
  bool stopped = false;      // by the user, while they were looked into
  bool complete = true;      // each path that was given has files
};

/// The files to import; a folder gives those below it that have the extension ("edi"), or with --auto, unless
/// an extension is given, all that are field files. With --auto and --dry-run they are looked into. What has
/// no files is told.
FoundFiles find_files(const ImportOptions& options);

/// The choices of an import and the rows that it will store.
struct PlannedImport {
  Module_data_file::ImportChoices choices;
  std::vector<Module_data_file::Proposal> proposals;  // for what isn't given; none without --auto
  Module_data_file::ImportPlan plan;
};

/// Of files that were looked into, into the open survey.
PlannedImport plan_import(const ImportOptions& options, const FoundFiles& files);

void print_proposals(const PlannedImport& planned, const FoundFiles& files);

/// Tells of rows whose station or place can't be what the files mean. What the import's report tells is left
/// to it.
void print_plan_problems(const PlannedImport& planned);

/// Prints proposals and plan and stores nothing. @return 0, or -1 after a message
int print_plan(const ImportOptions& options, const FoundFiles& files);

}  // namespace Batch
