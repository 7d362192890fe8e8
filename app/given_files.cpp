#include "app/given_files.h"

#include <filesystem>
#include <system_error>

#include "core/text_fields.h"

namespace Module_Brenlox {

namespace fs = std::filesystem;

GivenFiles sort_given_files(const std::vector<std::string>& paths) {
  GivenFiles given;
  for (const std::string& path : paths) {
    std::error_code missing;
    const bool is_survey = upper_case(path).ends_with(".MDB") && !fs::is_directory(path, missing);
    (is_survey ? given.surveys : given.field_paths).push_back(path);
  }
  return given;
}

std::string folder_of_given(const std::vector<std::string>& paths) {
  std::error_code missing;
  const fs::path first(paths.at(0));
  return paths.size() == 1 && fs::is_directory(first, missing) ? first.string()
                                                               : first.parent_path().string();
}

}  // namespace Module_Brenlox
