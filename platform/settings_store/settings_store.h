// settings_store.h: text values that belong to a user rather than to a survey, by application, section and
// key.
//
// Everything is text: a caller turns numbers into text with the procedures of core/number_text.h, so that a
// stored value reads the same in every locale. Section is a free text without "/", a key is any text.
#pragma once
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

class SettingsStore {
 public:
  SettingsStore() = default;
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;
  virtual ~SettingsStore() = default;

  /// @return the stored text, or `default_value` if there is none; a stored empty text is returned as such
  [[nodiscard]] virtual std::string value(std::string_view application, std::string_view section,
                                          std::string_view key, std::string_view default_value) const = 0;

  virtual void set_value(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view value) = 0;

  /// The keys of a section, each once; their order says nothing.
  [[nodiscard]] virtual std::vector<std::string> keys(std::string_view application,
                                                      std::string_view section) const = 0;

  /// Removes a key with its value; one that isn't there is no error.
  virtual void remove(std::string_view application, std::string_view section, std::string_view key) = 0;

  /// @return whether what was set and removed is kept; false where the user's settings can't be written
  [[nodiscard]] virtual bool flush(std::string_view application) = 0;
};

/// Keeps its values for its own life only: for tests, and for programs that must leave no trace.
class MemorySettingsStore final : public SettingsStore {
 public:
  [[nodiscard]] std::string value(std::string_view application, std::string_view section,
                                  std::string_view key, std::string_view default_value) const override;
  void set_value(std::string_view application, std::string_view section, std::string_view key,
                 std::string_view value) override;
  [[nodiscard]] std::vector<std::string> keys(std::string_view application,
                                              std::string_view section) const override;
  void remove(std::string_view application, std::string_view section, std::string_view key) override;
  [[nodiscard]] bool flush(std::string_view /*application*/) override { return true; }

 private:
  std::map<std::tuple<std::string, std::string, std::string>, std::string> values_;
};

/// The installed store; one in memory until something is installed.
SettingsStore& settings_store();

/// Installs `store` (not null) and returns what was installed before.
std::unique_ptr<SettingsStore> install_settings_store(std::unique_ptr<SettingsStore> store);
