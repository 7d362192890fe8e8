#include "import/field_files.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "core/file_names.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "import/file_decode.h"
#include "import/import_files.h"
#include "import/import_run.h"
#include "import/proposals/scanned_file.h"

namespace Module_data_file {

namespace {

bool is_of_known_kind(const std::string& file) {
  try {
    ReadingRecord record;
    SampleFields ignored;
    formats::FileReport report;
    display_file_format(file, record, ignored, report);
    // Any text may have "DC" in its first line.
    return record.file_format != format_unknown &&
           (record.file_format != format_fixed_columns || scan_field_file(file).failure.empty());
  } catch (const std::exception&) {
    return false;  // it can't be read, and nobody has asked for it by name
  }
}

bool is_field_file(const std::string& file) {
  return upper_case(Module_util::file_extension(file)) == "EDI" || is_of_known_kind(file);
}

}  // namespace

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
      if (is_field_file(file)) {
        files.add({file});
      }
    }
  }
  return files.paths();
}

}  // namespace Module_data_file
