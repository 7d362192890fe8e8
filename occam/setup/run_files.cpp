#include "occam/setup/run_files.h"

#include <algorithm>
#include <system_error>

#include "core/text_fields.h"
#include "platform/files/folder_access.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

void remove_quietly(const fs::path& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
}

/// The missing folders of a path, the outermost first.
std::vector<fs::path> missing_folders(fs::path folder) {
  std::vector<fs::path> missing;
  while (!folder.empty() && !fs::exists(folder)) {
    missing.push_back(folder);
    folder = folder.has_filename() ? folder.parent_path() : folder.parent_path().parent_path();
  }
  std::ranges::reverse(missing);
  return missing;
}

}  // namespace

RunScripts::RunScripts(fs::path folder) : created_(missing_folders(folder)) {
  make_folder(folder);
  const auto write = [&](const char* name, std::string_view contents) {
    fs::path path = folder / name;
    if (!fs::exists(path)) {
      created_.push_back(path);
    }
    safe_files::write_into_place(path, contents);
    return path;
  };
  try {
    write(run_script_name, "occam2d\r\n");
    const fs::path script = write(shell_script_name, "#!/bin/sh\noccam2d\n");
    fs::permissions(script, fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                    fs::perm_options::add);
  } catch (...) {
    std::for_each(created_.rbegin(), created_.rend(), remove_quietly);
    throw;
  }
}

RunScripts::~RunScripts() {
  if (!kept_) {
    std::for_each(created_.rbegin(), created_.rend(), remove_quietly);
  }
}

bool folder_heeds_case(const fs::path& existing_file) {
  const fs::path other = existing_file.parent_path() / upper_case(existing_file.filename().string());
  std::error_code ignored;
  return !fs::equivalent(existing_file, other, ignored);
}

}  // namespace Module_occam
