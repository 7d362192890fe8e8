#include "occam/setup/earlier_run.h"

#include <algorithm>
#include <functional>
#include <set>
#include <stdexcept>
#include <system_error>

#include "core/text_fields.h"
#include "occam/results/run_results.h"
#include "occam/run_parts.h"
#include "occam/setup/run_files.h"
#include "platform/files/files_in_use.h"
#include "platform/files/folder_access.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

bool begins_with(const std::string& name, std::string_view word) {
  return equal_ignoring_case(std::string_view(name).substr(0, word.size()), word);
}

bool is_iteration(const fs::path& file) { return begins_with(file.filename().string(), "ITER"); }

/// Whether a file names model and data: "startup", or one that begins as such files do.
bool is_start_file(const fs::path& file) {
  return equal_ignoring_case(file.filename().string(), "startup") || is_of_start_format(file);
}

/// What the inversion program leaves beside its iterations.
bool is_result(const fs::path& file) {
  const std::string name = file.filename().string();
  const auto ends_in = [&file](std::string_view extension) {
    return equal_ignoring_case(file.extension().string(), extension);
  };
  return ends_in(".resp") || (begins_with(name, "RESP") && (ends_in("") || ends_in(".out"))) ||
         ends_in(".shift") || ends_in(".logfile") || begins_with(name, "LogFile");
}

/// Adds the name of a file that the run needs.
void add_name(const fs::path& folder, const std::string& name, std::vector<fs::path>& names) {
  if (name.empty()) {
    return;
  }
  const fs::path file(name);
  const fs::path normal = file.lexically_normal();
  const fs::path from_folder =
      file.is_absolute() ? normal.lexically_relative(fs::absolute(folder).lexically_normal()) : normal;
  const bool inside = !from_folder.empty() && *from_folder.begin() != "..";
  if (inside == file.is_absolute()) {
    throw std::runtime_error("the earlier inversion there needs " + name +
                             ", which it would not find once it is moved; choose another folder");
  }
  if (inside) {
    names.push_back(from_folder);
  }
}

bool same_name(const fs::path& a, const fs::path& b) { return equal_ignoring_case(a.string(), b.string()); }

fs::path free_place(const std::function<fs::path(int)>& place) {
  int number = 1;
  std::error_code ignored;
  while (fs::exists(fs::symlink_status(place(number), ignored))) {
    ++number;
  }
  return place(number);
}

}  // namespace

EarlierRun::EarlierRun(fs::path folder, const std::vector<std::string>& new_files)
    : folder_(std::move(folder)),
      destination_(
          free_place([this](int number) { return folder_ / ("earlier_" + std::to_string(number)); })) {
  std::error_code failure;
  if (!fs::is_directory(folder_, failure)) {
    return;
  }
  std::vector<fs::path> entries;
  std::vector<fs::path> names{"startup", "mesh", run_script_name, shell_script_name};
  bool holds_run = false;
  fs::directory_iterator listing(folder_, failure);
  if (failure) {
    throw std::runtime_error(folder_.string() + ": " + failure.message());
  }
  for (const fs::directory_entry& entry : listing) {
    const fs::path name = entry.path().filename();
    std::error_code ignored;
    const bool is_file = entry.is_regular_file(ignored);
    if (is_file || name == derived_folder) {
      entries.push_back(name);
    }
    if (is_file && (is_iteration(name) || is_start_file(entry.path()))) {
      holds_run = true;
      names.push_back(name);
      for (const std::string& needed : names_of_run_files(folder_, entry.path())) {
        add_name(folder_, needed, names);
      }
    }
  }
  if (!holds_run) {
    return;
  }
  names.insert(names.end(), new_files.begin(), new_files.end());
  names.emplace_back(derived_folder);
  for (const fs::path& entry : entries) {
    const auto is_entry = [&entry](const fs::path& name) { return same_name(name, entry); };
    if (is_result(entry) || std::ranges::any_of(names, is_entry)) {
      files_.push_back(entry);
    }
  }
  for (const fs::path& name : std::set<fs::path>(names.begin(), names.end())) {
    if (name.has_parent_path() && *name.begin() != derived_folder && fs::exists(folder_ / name)) {
      files_.push_back(name);
    }
  }
}

EarlierRun::~EarlierRun() {
  std::error_code ignored;  // where files can't be moved, the run is whole in both folders together
  for (const fs::path& file : moved_) {
    fs::rename(destination_ / file, folder_ / file, ignored);
  }
  for (auto file = moved_.rbegin(); file != moved_.rend(); ++file) {
    fs::remove((destination_ / *file).parent_path(), ignored);  // empty by now; at the end the destination
  }
}

void EarlierRun::move_away() {
  for (const fs::path& file : files_) {  // the open survey may stand here under a name of the new run
    safe_files::refuse_input(folder_ / file);
  }
  for (const fs::path& file : files_) {
    make_folder((destination_ / file).parent_path());
    moved_.push_back(file);
    safe_files::move_into_place(folder_ / file, destination_ / file);
  }
}

std::string free_run_name(const fs::path& parent, const std::string& line, const std::string& type) {
  std::string name = "occam_" + line + "_" + type;
  std::ranges::replace_if(
      name, [](char c) { return c == '/' || c == '\\' || c == ':'; }, '_');
  return free_place(
             [&](int number) { return parent / (number == 1 ? name : name + "_" + std::to_string(number)); })
      .filename()
      .string();
}

}  // namespace Module_occam
