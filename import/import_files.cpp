#include "import/import_files.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/file_names.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "import/natural_order.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"

namespace Module_data_file {

namespace {

namespace fs = std::filesystem;

constexpr const char* folder_key = "ImportDirectory";
constexpr const char* extension_key = "ImportFileExtension";
constexpr const char* no_value = "<no value>";

}  // namespace

std::string import_start_folder() {
  std::string folder = settings_store().value(settings_application, settings_section, folder_key, no_value);
  std::error_code ignored;
  if (!fs::is_directory(folder, ignored)) {
    folder = Module_util::directory_of(session().database_file);
  }
  return folder;
}

void keep_import_folder(const std::string& folder) {
  settings_store().set_value(settings_application, settings_section, folder_key, folder);
}

std::string import_extension() {
  const std::string kept =
      settings_store().value(settings_application, settings_section, extension_key, no_value);
  return kept == no_value ? "edi" : kept;
}

void keep_import_extension(const std::string& extension) {
  settings_store().set_value(settings_application, settings_section, extension_key, extension);
}

std::string plain_extension(const std::string& typed) {
  const std::string_view text = trimmed(typed);
  const std::size_t start = text.find_first_not_of("*.");
  return std::string(start == std::string_view::npos ? std::string_view() : text.substr(start));
}

std::vector<std::string> files_in_folder(const std::string& folder, const std::string& extension) {
  const std::string ending = upper_case("." + plain_extension(extension));
  std::vector<std::string> names;
  std::error_code failure;
  fs::directory_iterator entry(folder, failure);
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    std::error_code vanished;
    std::string name = entry->path().filename().string();
    if ((ending == "." || upper_case(name).ends_with(ending)) && entry->is_regular_file(vanished)) {
      names.push_back(std::move(name));
    }
  }
  std::sort(names.begin(), names.end(), comes_before_naturally);
  return names;
}

void ImportFileList::add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (known_.insert(path).second) {
      paths_.push_back(path);
    }
  }
}

void ImportFileList::remove(const std::set<std::size_t>& places) {
  std::vector<std::string> kept;
  for (std::size_t place = 0; place < paths_.size(); ++place) {
    if (places.contains(place)) {
      known_.erase(paths_[place]);
    } else {
      kept.push_back(std::move(paths_[place]));
    }
  }
  paths_ = std::move(kept);
}

void ImportFileList::clear() {
  paths_.clear();
  known_.clear();
}

}  // namespace Module_data_file
