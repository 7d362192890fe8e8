#include "import/field_files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "core/file_names.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "import/import_files.h"
#include "import/import_run.h"

namespace Module_data_file {

namespace {

bool is_named_as_edi(const std::string& path) {
  return equal_ignoring_case(Module_util::file_extension(path), "edi");
}

// What processing programs leave beside the files of transfer functions: places of stations, and the
// responses that they were made of. They may begin as one of these does.
bool stands_beside(const std::string& path) {
  const std::string extension = Module_util::file_extension(path);
  return std::ranges::any_of(std::array{"stn", "rf", "rp"},
                             [&](const char* other) { return equal_ignoring_case(extension, other); });
}

}  // namespace

bool is_field_file(const ScannedFile& file) {
  const bool may_be_anything = file.format == format_unknown || file.format == format_fixed_columns;
  return !stands_beside(file.path) &&
         (is_named_as_edi(file.path) || !may_be_anything || file.failure.empty());
}

std::vector<std::string> field_files_of(const std::vector<std::string>& paths) {
  const BusyPointer busy;
  ImportFileList files;
  for (const std::string& path : paths) {
    std::error_code missing;
    if (!std::filesystem::is_directory(path, missing)) {
      files.add({path});
      continue;
    }
    for (const std::string& file : find_import_files(path, "")) {
      if (is_named_as_edi(file) || is_field_file(scan_field_file(file))) {
        files.add({file});
      }
    }
  }
  return files.paths();
}

}  // namespace Module_data_file
