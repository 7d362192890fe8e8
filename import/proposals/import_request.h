// import_request.h: an import as somebody asks for it without a window: files, what is chosen, and whether
// the files propose the rest.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/import_plan.h"
#include "import/proposals/proposals.h"
#include "import/proposals/scanned_file.h"

namespace Module_data_file {

struct ImportRequest {
  std::vector<std::string> paths;  // files, and folders to search for them
  ImportChoices choices;
  std::string extension;       // of the files in folders; empty if it wasn't given
  bool turn_ey_given = false;  // otherwise that of the choices means nothing where it may be proposed
  bool proposals = false;      // for all that isn't given
  bool looks = false;          // into the files also without proposals, for a plan
};

/// The files of an import after a look into them.
struct FoundFiles {
  std::vector<std::string> paths;
  std::vector<ScannedFile> scanned;  // empty without a look
  std::size_t left_out = 0;          // that were found in folders of all kinds and are no field files
  bool stopped = false;              // by the user, while they were looked into
  bool complete = true;              // each path that was given has files
};

/// The files to import; a folder gives those below it that have the extension ("edi"), or with proposals,
/// unless an extension is given, all that are field files. What has no files is told.
FoundFiles find_files(const ImportRequest& request);

/// The choices of an import and the rows that it will store.
struct PlannedImport {
  ImportChoices choices;
  std::vector<Proposal> proposals;  // for what isn't given
  ImportPlan plan;
};

/// Of files that were looked into, into the open survey.
PlannedImport plan_import(const ImportRequest& request, const FoundFiles& files);

/// The rows whose station or place can't be what the files mean, a line each under a title; empty without
/// any. What the import's report tells is left to it.
std::string plan_problems_text(const ImportPlan& plan);

}  // namespace Module_data_file
