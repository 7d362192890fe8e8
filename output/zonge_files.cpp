#include "output/zonge_files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "platform/files/files_in_use.h"

namespace fs = std::filesystem;

namespace Module_output {

namespace {

/// "a", "a and b", "a, b and c"
std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t index = 0; index < names.size(); ++index) {
    text += (index == 0 ? "" : index + 1 < names.size() ? ", " : " and ") + names[index];
  }
  return text;
}

}  // namespace

ZongePaths zonge_paths(const std::string& path) {
  constexpr std::array<std::string_view, 3> endings{"avg", "mde", "stn"};
  const std::string ending = Module_util::file_extension(path);
  const bool is_of_set = std::ranges::any_of(
      endings, [&](std::string_view known) { return equal_ignoring_case(ending, known); });
  const std::string root = is_of_set ? Module_util::strip_extension(path) : path;
  return {root + ".avg", root + ".mde", root + ".stn"};
}

std::string zonge_file_name(const Module_database::LineSelection& selection) {
  std::string name = selection.line + "_" + format_number(selection.reference_type, "0") + "_" +
                     selection.data_type + ".avg";
  std::ranges::replace_if(
      name, [](char c) { return c == '/' || c == '\\' || c == ':'; }, '_');
  return name;
}

bool may_write_zonge(const ZongePaths& files) {
  std::vector<std::string> earlier;
  for (const std::string& path : {files.avg, files.mde, files.stn}) {
    if (trap_errors("", [&path] { safe_files::refuse_input(path); }) != 0) {
      return false;
    }
    std::error_code unreadable;
    if (fs::exists(path, unreadable)) {
      earlier.push_back(Module_util::file_name_only(path));
    }
  }
  return earlier.empty() ||
         user_interface().ask_yes_no("The specified file already exists, overwrite? " + listed(earlier) +
                                     (earlier.size() == 1 ? " is" : " are") + " in " +
                                     fs::absolute(files.avg).parent_path().string());
}

std::string zonge_summary(int row_count, const ZongePaths& files) {
  return plain_text(row_count) + (row_count == 1 ? " row" : " rows") + " written to " + files.avg +
         ", with " + Module_util::file_name_only(files.mde) + " and " +
         Module_util::file_name_only(files.stn);
}

}  // namespace Module_output
