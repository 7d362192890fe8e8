#include "output/rhoplus_settings.h"

#include <limits>
#include <string_view>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"

namespace Module_output {

namespace {

constexpr const char* no_value = "<no value>";

constexpr const char* root_name_key = "RhoPlusRootName";
constexpr const char* surface_key = "RhoPlusSurface";
constexpr const char* resistivity_floor_key = "RhoPlusResFloor";
constexpr const char* phase_floor_key = "RhoPlusphaseFloor";
constexpr const char* scale_key = "RhoPlusResScale";
constexpr const char* written_scale_key = "RhoPlusphaseScale";
constexpr const char* exclude_data_key = "RhoPlusExcludeData";
constexpr const char* apply_static_key = "RhoPlusApplyStatic";
constexpr const char* exclude_negative_phase_key = "RhoPlusExcludeNegativePhase";
constexpr const char* use_file_errors_key = "RhoPlusUseFileErrors";

std::string stored(const char* key) {
  return settings_store().value(settings_application, settings_section, key, no_value);
}

void store(const char* key, const std::string& text) {
  settings_store().set_value(settings_application, settings_section, key, text);
}

void take_choice(std::int32_t& setting, const std::string& text) {
  const double value = is_numeric(text) ? numeric_value(text) : -1.0;
  if (value >= 0.0 && value <= 1.0) {
    setting = static_cast<std::int32_t>(numeric_value(format_number(value, "0")));
  }
}

bool take_positive(float& setting, std::string_view text) {
  const double value = is_numeric(text) ? numeric_value(text) : 0.0;
  // A text too small or too large for a single would become 0 or infinite.
  const bool valid = value >= static_cast<double>(std::numeric_limits<float>::min()) &&
                     value <= static_cast<double>(std::numeric_limits<float>::max());
  if (valid) {
    setting = static_cast<float>(value);
  }
  return valid;
}

}  // namespace

RhoplusSettings& rhoplus_settings() {
  static RhoplusSettings settings;
  return settings;
}

RhoplusSettings load_rhoplus_settings() {
  RhoplusSettings settings;
  const std::string root_name = stored(root_name_key);
  if (root_name != no_value) {
    settings.root_name = root_name;
  }
  take_choice(settings.surface, stored(surface_key));
  take_positive(settings.resistivity_error_floor, stored(resistivity_floor_key));
  take_positive(settings.resistivity_scale, stored(scale_key));
  take_positive(settings.phase_error_floor, stored(phase_floor_key));
  take_choice(settings.exclude_data, stored(exclude_data_key));
  take_choice(settings.apply_static, stored(apply_static_key));
  take_choice(settings.exclude_negative_phase, stored(exclude_negative_phase_key));
  take_choice(settings.use_file_errors, stored(use_file_errors_key));
  return settings;
}

void save_rhoplus_settings(const RhoplusSettings& settings) {
  store(root_name_key, settings.root_name);
  store(surface_key, format_number(settings.surface, "0"));
  store(resistivity_floor_key, format_number(settings.resistivity_error_floor, "0.0"));
  store(phase_floor_key, format_number(settings.phase_error_floor, "0.0"));
  store(written_scale_key, format_number(settings.resistivity_scale, "0.0000"));
  store(exclude_data_key, format_number(settings.exclude_data, "0"));
  store(apply_static_key, format_number(settings.apply_static, "0"));
  store(exclude_negative_phase_key, format_number(settings.exclude_negative_phase, "0"));
  store(use_file_errors_key, format_number(settings.use_file_errors, "0"));
}

bool enter_root_name(RhoplusSettings& settings, const std::string& text) {
  const std::string_view name = trimmed(text);
  if (!name.empty()) {
    settings.root_name = name;
  }
  return !name.empty();
}

bool enter_positive(float& setting, const std::string& text) { return take_positive(setting, trimmed(text)); }

}  // namespace Module_output
