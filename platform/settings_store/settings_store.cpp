#include "platform/settings_store/settings_store.h"

#include <cassert>
#include <utility>

namespace {

std::unique_ptr<SettingsStore>& installed_store() {
  static std::unique_ptr<SettingsStore> store = std::make_unique<MemorySettingsStore>();
  return store;
}

}  // namespace

std::string MemorySettingsStore::value(std::string_view application, std::string_view section,
                                       std::string_view key, std::string_view default_value) const {
  const auto found = values_.find({std::string(application), std::string(section), std::string(key)});
  return found == values_.end() ? std::string(default_value) : found->second;
}

void MemorySettingsStore::set_value(std::string_view application, std::string_view section,
                                    std::string_view key, std::string_view value) {
  values_.insert_or_assign({std::string(application), std::string(section), std::string(key)},
                           std::string(value));
}

std::vector<std::string> MemorySettingsStore::keys(std::string_view application,
                                                   std::string_view section) const {
  std::vector<std::string> found;
  for (auto entry = values_.lower_bound({std::string(application), std::string(section), std::string()});
       entry != values_.end() && std::get<0>(entry->first) == application &&
       std::get<1>(entry->first) == section;
       ++entry) {
    found.push_back(std::get<2>(entry->first));
  }
  return found;
}

void MemorySettingsStore::remove(std::string_view application, std::string_view section,
                                 std::string_view key) {
  values_.erase({std::string(application), std::string(section), std::string(key)});
}

SettingsStore& settings_store() { return *installed_store(); }

std::unique_ptr<SettingsStore> install_settings_store(std::unique_ptr<SettingsStore> store) {
  assert(store != nullptr);
  return std::exchange(installed_store(), std::move(store));
}
