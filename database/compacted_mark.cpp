#include "database/compacted_mark.h"

#include <fstream>
#include <string>
#include <system_error>

#include "platform/files/file_mark.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

constexpr std::size_t head_size = 100;  // of a file of the engine

bool stands_alone(const fs::path& survey) {
  std::error_code unreadable;
  return !fs::exists(survey.string() + "-wal", unreadable) &&
         !fs::exists(survey.string() + "-journal", unreadable) && !unreadable;
}

/// Empty if the survey can't be told from another state of it.
std::string state_of(const fs::path& survey) {
  std::error_code missing;
  if (!fs::is_regular_file(survey, missing)) {  // a pipe would wait for who writes
    return {};
  }
  std::string head(head_size, '\0');
  std::ifstream stream(survey, std::ios::binary);
  const std::string state = file_state(survey);
  if (state.empty() || !stream.read(head.data(), head_size) || !stands_alone(survey)) {
    return {};
  }
  return state + " " + head;
}

fs::path behind_links(const fs::path& survey) {
  std::error_code missing;
  fs::path real = fs::canonical(survey, missing);
  return missing ? survey : real;
}

}  // namespace

void mark_compacted(const fs::path& survey) {
  const fs::path real = behind_links(survey);
  if (const std::string state = state_of(real); !state.empty()) {
    set_file_mark(real, state);
  }
}

bool is_marked_compacted(const fs::path& survey) {
  const fs::path real = behind_links(survey);
  const std::string state = state_of(real);
  return !state.empty() && state == file_mark(real);
}

}  // namespace Module_database
