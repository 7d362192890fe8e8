// qt_settings_store.h: the per-user settings store of the system: the registry on Windows, a file elsewhere.
#pragma once
#include "platform/settings_store/settings_store.h"

/// Where the settings can't be written, a full disk say, that is told once, as finished work is.
class QtSettingsStore final : public SettingsStore {
 public:
  [[nodiscard]] std::string value(std::string_view application, std::string_view section,
                                  std::string_view key, std::string_view default_value) const override;
  void set_value(std::string_view application, std::string_view section, std::string_view key,
                 std::string_view value) override;
  [[nodiscard]] std::vector<std::string> keys(std::string_view application,
                                              std::string_view section) const override;
  void remove(std::string_view application, std::string_view section, std::string_view key) override;
  [[nodiscard]] bool flush(std::string_view application) override;

 private:
  MemorySettingsStore unsaved_;  // what couldn't be written: it holds while the program runs
  bool told_ = false;            // that something couldn't
};
