// survey_moment.h: whether the files of a survey are all of one moment.
//
// The engine's locks keep out programs that ask for them. A program that copies over a file asks for none.
#pragma once
#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>

#include "platform/files/safe_files.h"

namespace Module_database {

/// Tells a survey's file, with log and journal, from the same file after it was written.
class SurveyMoment {
 public:
  explicit SurveyMoment(const std::filesystem::path& survey);

  /// Whether nothing has been written since.
  [[nodiscard]] bool is_now() const;

  /// The same by sizes and times alone, for a caller that must not open and close the file.
  [[nodiscard]] bool is_now_by_times() const;

 private:
  static constexpr std::size_t file_count = 3;
  using SizesAndTimes = std::array<std::pair<std::uintmax_t, std::filesystem::file_time_type>, file_count>;

  [[nodiscard]] SizesAndTimes sizes_and_times() const;
  [[nodiscard]] std::string head() const;

  std::filesystem::path survey_;
  SizesAndTimes sizes_and_times_;
  std::string head_;
};

/// Copies a survey with log and journal. Throws dao::LockedError if another program goes on writing it.
void copy_with_log(const std::filesystem::path& survey, const std::filesystem::path& copy,
                   const safe_files::Watch& watch);

}  // namespace Module_database
