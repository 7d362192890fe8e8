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

SettingsStore& settings_store() { return *installed_store(); }

std::unique_ptr<SettingsStore> install_settings_store(std::unique_ptr<SettingsStore> store) {
  assert(store != nullptr);
  return std::exchange(installed_store(), std::move(store));
}
