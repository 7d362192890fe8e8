#include "occam/inversion/earlier_iterations.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "core/text_fields.h"
#include "occam/inversion/inversion_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The number behind a word at the beginning of a name; -1 if there is none.
int number_behind(const std::string& name, std::string_view word) {
  constexpr std::size_t most_digits = 6;
  if (!equal_ignoring_case(std::string_view(name).substr(0, word.size()), word)) {
    return -1;
  }
  std::size_t end = word.size();
  int number = 0;
  for (; end < name.size() && is_digit(name[end]) && end - word.size() < most_digits; ++end) {
    number = 10 * number + (name[end] - '0');
  }
  return end > word.size() ? number : -1;
}

fs::path free_folder(const fs::path& directory) {
  for (int number = 1;; ++number) {
    fs::path folder = directory / ("earlier_" + std::to_string(number));
    if (!fs::exists(folder)) {
      return folder;
    }
  }
}

}  // namespace

std::map<int, std::string> iteration_files_of(const fs::path& directory) {
  std::map<int, std::string> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    const std::string name = entry.path().filename().string();
    if (const int number = number_behind(name, "ITER"); number >= 0 && entry.is_regular_file()) {
      files.emplace(number, name);
    }
  }
  return files;
}

EarlierIterationFiles::EarlierIterationFiles(fs::path directory, int last_kept)
    : directory_(std::move(directory)) {
  for (const auto& [number, name] : iteration_files_of(directory_)) {
    if (number > last_kept) {
      iterations_.push_back(name);
      files_.push_back(name);
    }
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(directory_)) {
    const std::string name = entry.path().filename().string();
    const bool is_log = last_kept < 0 && name == inversion_log_name;
    if (entry.is_regular_file() && (number_behind(name, "RESP") > last_kept || is_log)) {
      files_.push_back(name);
    }
  }
  if (iterations_.empty()) {
    files_.clear();  // a log or a response alone is nobody's inversion
  }
}

std::string EarlierIterationFiles::text() const {
  return iterations_.size() == 1 ? iterations_.front() : iterations_.front() + " to " + iterations_.back();
}

fs::path EarlierIterationFiles::folder() const { return free_folder(directory_); }

fs::path EarlierIterationFiles::move_away() const {
  const fs::path folder = free_folder(directory_);
  fs::create_directory(folder);
  std::vector<std::string> moved;
  try {
    for (const std::string& file : files_) {
      fs::rename(directory_ / file, folder / file);
      moved.push_back(file);
    }
  } catch (const fs::filesystem_error& failure) {
    std::error_code ignored;
    for (const std::string& file : moved) {
      fs::rename(folder / file, directory_ / file, ignored);
    }
    fs::remove(folder, ignored);
    throw std::runtime_error(std::string("an earlier iteration can't be moved away: ") + failure.what());
  }
  return folder;
}

}  // namespace Module_occam
