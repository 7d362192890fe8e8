#include "database/opening_progress.h"

#include "core/user_interface.h"

namespace Module_database {

OpeningProgress::OpeningProgress(const std::filesystem::path& survey)
    : opening_("Opening " + survey.filename().string() + ": ") {}

OpeningProgress::~OpeningProgress() { user_interface().show_progress("", -1); }

void OpeningProgress::show(std::string_view what, double part) const {
  user_interface().show_progress(opening_ + std::string(what), static_cast<int>(100.0 * part));
  if (user_interface().stop_requested()) {
    throw OpeningStopped();
  }
}

safe_files::Watch OpeningProgress::of_copy() const {
  return [this](double part) { show("keeping the earlier state", part); };
}

dao::CompactionWatch OpeningProgress::of_compaction() const {
  return [this](std::string_view what, double part) { show(what, part); };
}

}  // namespace Module_database
