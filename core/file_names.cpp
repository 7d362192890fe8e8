#include "core/file_names.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <filesystem>
#include <set>
#include <system_error>

#include "core/scope_guard.h"
#include "core/text_fields.h"
#include "core/user_interface.h"

namespace fs = std::filesystem;

namespace Module_util {

namespace {

constexpr std::string_view separators = "/\\";

std::string_view name_part(std::string_view path) {
  const std::size_t last = path.find_last_of(separators);
  return last == std::string_view::npos ? path : path.substr(last + 1);
}

/// True if `name` matches `pattern`, both in upper case.
bool matches(std::string_view name, std::string_view pattern) {
  std::size_t in_name = 0;
  std::size_t in_pattern = 0;
  std::size_t star = std::string_view::npos;  // the last "*" met and the name's place when it was
  std::size_t name_at_star = 0;
  while (in_name < name.size()) {
    if (in_pattern < pattern.size() && pattern[in_pattern] == '*') {
      star = in_pattern++;
      name_at_star = in_name;
    } else if (in_pattern < pattern.size() &&
               (pattern[in_pattern] == '?' || pattern[in_pattern] == name[in_name])) {
      ++in_pattern;
      ++in_name;
    } else if (star != std::string_view::npos) {
      in_pattern = star + 1;
      in_name = ++name_at_star;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', in_pattern) == std::string_view::npos;
}

std::string completed_pattern(std::string_view text) {
  const std::string pattern = upper_case(trimmed(text));
  if (pattern.empty() || pattern == "*.*") {
    return "*";  // a name without a point is a file too
  }
  if (pattern.find('.') == std::string::npos) {
    return "*." + pattern;
  }
  return pattern.starts_with('.') ? "*" + pattern : pattern;
}

class FolderSearch {
 public:
  FolderSearch(std::string pattern, std::vector<std::string>& files)
      : pattern_(std::move(pattern)), files_(files) {}

  void search(const fs::path& folder) {
    std::error_code failure;
    const fs::path place = fs::canonical(folder, failure);
    if (failure || !visited_.insert(place).second) {
      return;
    }
    std::vector<fs::path> subfolders;
    fs::directory_iterator entry(folder, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
      // Pipes and sockets are found as well, so that whoever reads the files says why those are not read.
      std::error_code vanished;
      if (entry->is_directory(vanished)) {
        subfolders.push_back(entry->path());
      } else if (entry->exists(vanished) &&
                 matches(upper_case(entry->path().filename().string()), pattern_)) {
        files_.push_back(entry->path().string());
      }
    }
    for (const fs::path& subfolder : subfolders) {
      // How much there is to search is known only at the end.
      user_interface().show_progress("Looking for files: " + std::to_string(files_.size()) + " found", 0);
      user_interface().process_events();
      if (user_interface().stop_requested()) {
        return;
      }
      search(subfolder);
    }
  }

 private:
  std::string pattern_;
  std::vector<std::string>& files_;
  std::set<fs::path> visited_;
};

}  // namespace

std::string file_stem(std::string_view name) {
  return std::string(trimmed(trimmed(name).substr(0, trimmed(name).rfind('.'))));
}

std::string file_extension(std::string_view name) {
  const std::string file = file_name_only(name);
  const std::size_t point = file.rfind('.');
  return point == std::string::npos ? std::string() : file.substr(point + 1);
}

std::string file_name_only(std::string_view path) { return std::string(trimmed(name_part(path))); }

std::string directory_of(std::string_view path) {
  return std::string(path.substr(0, path.size() - name_part(path).size()));
}

std::string strip_extension(std::string_view path) {
  const std::string_view name = name_part(path);
  return directory_of(path) + std::string(name.substr(0, name.rfind('.')));
}

int select_output_file(std::string& name, const std::string& title, const std::string& filter) {
  try {
    FileDialogRequest request;
    request.title = title;
    request.filter = filter;
    request.directory = directory_of(name);
    request.suggested_name = file_name_only(name);
    std::ranges::replace(request.suggested_name, ':', '_');
    if (const std::string extension = file_extension(name); !extension.empty()) {
      request.default_extension = "*." + extension;
    }
    name = user_interface().select_file_to_create(request);
    std::error_code unreadable;
    if (!name.empty() && fs::exists(name, unreadable) &&
        !user_interface().ask_yes_no("The specified file already exists. Overwrite?")) {
      name.clear();
    }
    return 0;
  } catch (const std::exception&) {
    return -1;
  }
}

std::vector<std::string> scan_directory(std::string_view pattern, std::string_view directory) {
  std::vector<std::string> files;
  const ScopeGuard end_progress([] { user_interface().show_progress("", -1); });
  try {
    const std::string_view place = trimmed(directory);
    FolderSearch(completed_pattern(pattern), files)
        .search(place.empty() ? fs::current_path().root_path() : fs::path(place));
  } catch (const std::exception&) {  // what was found so far is still good
  }
  return files;
}

float phase_difference(float a, float b) {
  constexpr float turn = 6283.185F;        // milliradians
  constexpr float quarter_turn = 1571.0F;  // milliradians
  const float difference = a - b;
  const bool may_wrap = a * b < 0.0F && std::max(std::abs(a), std::abs(b)) >= quarter_turn;
  if (may_wrap && std::abs(difference) > turn / 2.0F) {
    return difference > 0.0F ? difference - turn : difference + turn;
  }
  return difference;
}

}  // namespace Module_util
