#include "app/view_settings.h"

#include "core/number_text.h"
#include "core/session_state.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"

namespace Module_Brenlox {

namespace {

constexpr const char* places_section = "Brenlox places";  // a key is the path of a survey
constexpr const char* both_modes_key = "View both modes";
constexpr const char* periods_key = "View periods";
constexpr const char* toolbar_key = "View toolbar";

bool is_set(const char* key, bool by_default) {
  return settings_store().value(settings_application, settings_section, key, by_default ? "1" : "0") == "1";
}

void set(const char* key, bool value) {
  settings_store().set_value(settings_application, settings_section, key, value ? "1" : "0");
}

/// "100 200E": the line may hold anything, the number no blank.
std::string place_text(std::int32_t station_index) {
  const auto at = static_cast<std::size_t>(station_index) - 1;
  return plain_text(session().station_value[at]) + " " + session().station_line[at];
}

}  // namespace

ViewSettings load_view_settings() {
  const ViewSettings by_default;
  return {is_set(both_modes_key, by_default.both_modes), is_set(periods_key, by_default.periods),
          is_set(toolbar_key, by_default.toolbar)};
}

void store_view_settings(const ViewSettings& settings) {
  set(both_modes_key, settings.both_modes);
  set(periods_key, settings.periods);
  set(toolbar_key, settings.toolbar);
}

std::string place_on_show() {
  const bool any = session().database_open && session().current_station_index > 0;
  return any ? place_text(session().current_station_index) : std::string();
}

void remember_place(const std::string& place) {
  if (session().database_open && !place.empty()) {
    settings_store().set_value(settings_application, places_section, session().database_file, place);
  }
}

std::int32_t remembered_station() {
  const std::string place =
      settings_store().value(settings_application, places_section, session().database_file, "");
  for (std::int32_t index = 1; !place.empty() && index <= session().station_count; ++index) {
    if (place_text(index) == place) {
      return index;
    }
  }
  return 1;
}

}  // namespace Module_Brenlox
