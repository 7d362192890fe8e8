#include "database/survey_moment.h"

#include <fstream>
#include <system_error>

#include "platform/dao/error.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

constexpr std::array<const char*, 3> own_files{"", "-journal",
                                               "-wal"};  // endings of what a survey consists of

}  // namespace

SurveyMoment::SurveyMoment(const fs::path& survey)
    : survey_(survey), sizes_and_times_(sizes_and_times()), head_(head()) {}

bool SurveyMoment::is_now() const { return is_now_by_times() && head() == head_; }

bool SurveyMoment::is_now_by_times() const { return sizes_and_times() == sizes_and_times_; }

// A missing file has neither.
SurveyMoment::SizesAndTimes SurveyMoment::sizes_and_times() const {
  static_assert(own_files.size() == file_count);
  SizesAndTimes state;
  for (std::size_t i = 0; i < own_files.size(); ++i) {
    const fs::path file(survey_.string() + own_files[i]);
    std::error_code missing;
    state[i] = {fs::file_size(file, missing), fs::last_write_time(file, missing)};
  }
  return state;
}

// The engine counts its changes here. Two writes within one tick of the clock leave the same time.
std::string SurveyMoment::head() const {
  constexpr std::streamsize head_size = 100;
  std::string bytes(head_size, '\0');
  std::ifstream stream(survey_, std::ios::binary);
  stream.read(bytes.data(), head_size);
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

void copy_with_log(const fs::path& survey, const fs::path& copy, const safe_files::Watch& watch) {
  constexpr int attempts = 5;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const SurveyMoment before(survey);
    for (const char* const ending : own_files) {
      const fs::path source(survey.string() + ending);
      const fs::path target(copy.string() + ending);
      std::error_code ignored;
      fs::remove(target, ignored);
      if (fs::exists(source)) {
        safe_files::copy_into_place(source, target, watch);
        fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
      }
    }
    if (before.is_now()) {
      return;
    }
  }
  throw dao::LockedError();
}

}  // namespace Module_database
