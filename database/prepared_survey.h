// prepared_survey.h: a survey's file is made ready to be opened.
#pragma once
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "database/opening_progress.h"
#include "platform/dao/database.h"
#include "platform/files/private_folder.h"
#include "platform/files/safe_files.h"

namespace Module_database {

/// What was found in a survey's file, and what was done with it.
struct PreparedSurvey {
  bool is_jet = false;
  bool is_survey = true;
  std::filesystem::path jet_kept_at;         // empty: not kept
  std::vector<dao::SchemaObject> taken_out;  // triggers and views
  bool is_up_to_date = false;                // else it was taken as it is
  std::vector<std::string> missing_tables;   // they have been added
  std::string other_name;                    // in words, of a file that had several; empty: it had none
  // The earlier state, which becomes the backup once the survey is open; null if it has its place already.
  std::unique_ptr<safe_files::WaitingCopy> backup;
  // Of one that is worked on in a private copy.
  std::unique_ptr<PrivateFolder> private_folder;
  std::filesystem::path private_copy;
};

/// Recovers a survey, converts one of a genuine Jet file, compacts it and brings it up to date. All this
/// happens to a copy beside it, in which everything is read that an opening reads; only then the earlier
/// bytes become the backup and the copy takes the path, each by one rename. A survey that was closed compact,
/// and that nothing has written since, is taken as it is. Throws OpeningStopped, dao::Error or
/// std::runtime_error, and then survey and backup are as before.
PreparedSurvey prepare_in_place(const std::filesystem::path& survey, const std::filesystem::path& backup,
                                const OpeningProgress& progress);

/// The same for a survey in a place that can't be written. The original and its folder stay as they are.
PreparedSurvey prepare_private_copy(const std::filesystem::path& survey, const OpeningProgress& progress);

}  // namespace Module_database
