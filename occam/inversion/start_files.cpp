#include "occam/inversion/start_files.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "core/text_fields.h"
#include "formats/occam/start_file.h"
#include "occam/inversion/earlier_iterations.h"
#include "occam/run_parts.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

// A file that can't be read may well be the start, and then its user is to know what is wrong with it.
bool may_be_start(const fs::path& file) {
  try {
    return is_of_start_format(file) && read_start_file(file.string()).iteration == 0;
  } catch (const std::exception&) {
    return true;
  }
}

}  // namespace

std::string find_start_file(const fs::path& directory) {
  std::vector<std::string> starts;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    std::string name = entry.path().filename().string();
    if (!entry.is_regular_file()) {
      continue;
    }
    if (equal_ignoring_case(name, "startup")) {
      return name;
    }
    if (!equal_ignoring_case(name.substr(0, 4), "ITER") && may_be_start(entry.path())) {
      starts.push_back(name);
    }
  }
  std::ranges::sort(starts);
  if (starts.size() == 1) {
    return starts.front();
  }
  if (!starts.empty()) {
    throw std::runtime_error("there are several start files in " + directory.string() + ": " + starts[0] +
                             ", " + starts[1]);
  }
  const std::string last = last_iteration_file(directory);
  throw std::runtime_error("there is no start file in " + directory.string() +
                           (last.empty() ? "" : "; the inversion can be continued from " + last));
}

std::string last_iteration_file(const fs::path& directory) {
  const std::map<int, std::string> files = iteration_files_of(directory);
  return files.empty() ? std::string() : files.rbegin()->second;
}

std::string name_within(const fs::path& directory, const std::string& path) {
  const fs::path given(path);
  if (!given.has_parent_path()) {
    return path;
  }
  std::error_code missing;
  if (!fs::equivalent(fs::absolute(given).parent_path(), directory, missing)) {
    throw std::runtime_error(path + " is not in " + directory.string() + ", the folder of the run");
  }
  return given.filename().string();
}

}  // namespace Module_occam
