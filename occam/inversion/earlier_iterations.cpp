#include "occam/inversion/earlier_iterations.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/text_fields.h"
#include "formats/occam/iteration_file.h"
#include "formats/occam/shift_file.h"
#include "formats/occam/start_file.h"
#include "occam/inversion/inversion_files.h"
#include "occam/run_parts.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The number of "WORDnn" or "WORD_nn", bare or with the ending; -1 for another name. A copy that someone has
// kept under a name of its own is none.
int number_in(std::string_view name, std::string_view word, std::string_view ending) {
  constexpr std::size_t most_digits = 6;
  if (!equal_ignoring_case(name.substr(0, word.size()), word)) {
    return -1;
  }
  name.remove_prefix(word.size());
  if (name.starts_with('_')) {
    name.remove_prefix(1);
  }
  std::size_t digits = 0;
  int number = 0;
  for (; digits < name.size() && is_digit(name[digits]) && digits < most_digits; ++digits) {
    number = 10 * number + (name[digits] - '0');
  }
  const std::string_view rest = name.substr(digits);
  return digits > 0 && (rest.empty() || equal_ignoring_case(rest, ending)) ? number : -1;
}

int response_number_of(const std::string& name) {
  return std::max(number_in(name, "RESP", ".resp"), number_in(name, "RESP_ITER", ".out"));
}

int shift_number_of(const std::string& name) { return number_in(name, "SHIFT", ".shift"); }

fs::path free_folder(const fs::path& directory) {
  for (int number = 1;; ++number) {
    fs::path folder = directory / ("earlier_" + std::to_string(number));
    if (!fs::exists(folder)) {
      return folder;
    }
  }
}

// Of a start or iteration file; none if it can't be read.
std::optional<ControlFile> names_in(const fs::path& file) {
  try {
    return read_control_file(file.string());
  } catch (const std::exception&) {
    return {};
  }
}

std::vector<std::string> files_in(const fs::path& directory) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    if (entry.is_regular_file()) {
      names.push_back(entry.path().filename().string());
    }
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace

int iteration_number_of(const std::string& name) { return number_in(name, "ITER", ".iter"); }

std::map<int, std::string> iteration_files_of(const fs::path& directory) {
  std::map<int, std::string> files;
  for (const std::string& name : files_in(directory)) {
    if (const int number = iteration_number_of(name); number >= 0) {
      files.emplace(number, name);
    }
  }
  return files;
}

std::optional<int> iteration_that_writes(const std::string& name, bool looks_for_shifts) {
  if (const int number = iteration_number_of(name); number >= 0 && name == iteration_file_name(number)) {
    return number;
  }
  if (const int number = response_number_of(name); number >= 0 && name == response_name_of(number)) {
    return number;
  }
  if (const int number = shift_number_of(name);
      looks_for_shifts && number >= 0 && name == shift_file_name(number)) {
    return number;
  }
  return {};
}

EarlierIterationFiles::EarlierIterationFiles(fs::path directory, int last_kept,
                                             const std::vector<std::string>& in_use)
    : directory_(std::move(directory)) {
  using Numbered = std::vector<std::pair<int, std::string>>;
  Numbered iterations;
  Numbered responses;
  Numbered shifts;
  bool has_log = false;
  for (const std::string& name : files_in(directory_)) {
    if (std::ranges::find(in_use, name) != in_use.end()) {
      continue;
    }
    const auto take = [&](Numbered& files, int number) {
      if (number > last_kept) {
        files.emplace_back(number, name);
      }
    };
    take(iterations, iteration_number_of(name));
    take(responses, response_number_of(name));
    take(shifts, shift_number_of(name));
    has_log = has_log || name == inversion_log_name;
  }
  Numbered all;
  for (Numbered* files : {&iterations, &responses, &shifts}) {
    std::ranges::sort(*files);
    all.insert(all.end(), files->begin(), files->end());
  }
  for (const auto& [number, name] : iterations.empty() ? responses : iterations) {
    named_.push_back(name);
  }
  std::ranges::stable_sort(all, std::greater(), &Numbered::value_type::first);
  for (auto& [number, name] : all) {
    files_.push_back(std::move(name));
  }
  if (has_log && last_kept < 0 && !named_.empty()) {  // a log alone is gone on with
    files_.emplace_back(inversion_log_name);
  }
}

std::string EarlierIterationFiles::text() const {
  return named_.size() == 1 ? named_.front() : named_.front() + " to " + named_.back();
}

fs::path EarlierIterationFiles::folder() const { return free_folder(directory_); }

// Beside what the iterations name, the start files that name the same: with them the folder is the run as its
// inversion found it. What lies outside of the folder is no part of a run.
std::set<std::string> EarlierIterationFiles::files_to_copy() const {
  std::set<std::string> names;
  std::vector<ControlFile> runs;
  const auto add = [&](const std::string& name) {
    const fs::path path = fs::path(name).lexically_normal();
    std::error_code missing;
    if (path.is_relative() && !path.empty() && *path.begin() != ".." &&
        std::ranges::find(files_, path.string()) == files_.end() &&
        fs::is_regular_file(directory_ / path, missing)) {
      names.insert(path.string());
    }
  };
  for (const std::string& file : named_) {
    if (const std::optional<ControlFile> names_of = names_in(directory_ / file); names_of) {
      runs.push_back(*names_of);
      std::ranges::for_each(names_of_run_files(directory_, directory_ / file), add);
    }
  }
  for (const std::string& file : files_in(directory_)) {
    if (iteration_number_of(file) < 0 && is_of_start_format(directory_ / file)) {
      const std::optional<ControlFile> names_of = names_in(directory_ / file);
      if (names_of && std::ranges::find(runs, *names_of) != runs.end()) {
        add(file);
      }
    }
  }
  return names;
}

fs::path EarlierIterationFiles::move_away() const {
  fs::path folder = free_folder(directory_);
  std::vector<fs::path> copied;
  std::vector<std::string> moved;
  const auto undo = [&] {
    std::error_code ignored;
    for (const std::string& file : moved) {
      fs::rename(folder / file, directory_ / file, ignored);
    }
    for (const fs::path& file : copied) {
      fs::remove(folder / file, ignored);
      fs::remove((folder / file).parent_path(), ignored);  // once it is empty
    }
    fs::remove(folder, ignored);
  };
  const auto told = [&](const std::string& reason) {
    return std::runtime_error("the earlier iterations can't be moved into " + folder.string() + ": " +
                              reason);
  };
  try {
    fs::create_directory(folder);
    for (const std::string& file : files_to_copy()) {
      fs::create_directories((folder / file).parent_path());
      copied.emplace_back(file);
      safe_files::copy_into_place(directory_ / file, folder / file);
    }
    for (const std::string& file : files_) {
      fs::rename(directory_ / file, folder / file);
      moved.push_back(file);
    }
  } catch (const fs::filesystem_error& failure) {
    undo();
    throw told(failure.code().message());
  } catch (const std::runtime_error& failure) {
    undo();
    throw told(failure.what());
  }
  return folder;
}

}  // namespace Module_occam
