// opening_progress.h: how far an opening is.
#pragma once
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/dao/compact.h"
#include "platform/files/safe_files.h"

namespace Module_database {

/// The user has asked to stop.
class OpeningStopped : public std::exception {};

/// Shows one text and percentage for its life; the user may stop the opening as long as nothing has taken the
/// survey's place.
class OpeningProgress {
 public:
  explicit OpeningProgress(const std::filesystem::path& survey);
  OpeningProgress(const OpeningProgress&) = delete;
  OpeningProgress& operator=(const OpeningProgress&) = delete;
  ~OpeningProgress();

  /// Throws OpeningStopped.
  void show(std::string_view what, double part) const;
  [[nodiscard]] safe_files::Watch of_copy() const;
  [[nodiscard]] dao::CompactionWatch of_compaction() const;

 private:
  std::string opening_;
};

}  // namespace Module_database
