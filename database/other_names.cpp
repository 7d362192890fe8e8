#include "database/other_names.h"

#include <system_error>

#include "platform/dao/compact.h"
#include "platform/dao/error.h"
#include "platform/files/lock_holder.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

/// Another name in the same folder; empty if there is none.
fs::path neighbouring_name(const fs::path& survey) {
  std::error_code failure;
  for (const fs::directory_entry& entry : fs::directory_iterator(survey.parent_path(), failure)) {
    if (entry.path() != survey && fs::equivalent(entry.path(), survey, failure)) {
      return entry.path();
    }
  }
  return {};
}

bool has_log(const fs::path& survey) {
  std::error_code unreadable;
  return fs::exists(survey.string() + "-wal", unreadable) ||
         fs::exists(survey.string() + "-journal", unreadable);
}

}  // namespace

bool has_other_names(const fs::path& survey) {
  std::error_code missing;
  const std::uintmax_t names = fs::hard_link_count(survey, missing);
  return !missing && names > 1;
}

std::string words_for_other_name(const fs::path& survey) {
  const fs::path other = neighbouring_name(survey);
  return other.empty() ? " in another folder (a hard link)" : " (a hard link): " + other.string();
}

void refuse_log_beside_other_name(const fs::path& survey) {
  if (!has_other_names(survey) || has_log(survey)) {
    return;
  }
  const fs::path other = neighbouring_name(survey);
  if (!dao::expects_log(survey.string()) && (other.empty() || !has_log(other))) {
    return;
  }
  if (!lock_holder(survey).empty()) {
    throw dao::LockedError();
  }
  throw dao::Error("the file has another name as well" + words_for_other_name(survey) +
                   ". It wasn't closed under that name, and its latest rows are in the log beside it; open "
                   "it there.");
}

}  // namespace Module_database
