// view_settings.h: how a user looks at surveys, and where in each of them: kept in the settings store.
#pragma once
#include <cstdint>
#include <string>

namespace Module_Brenlox {

struct ViewSettings {
  bool both_modes = false;
  bool periods = false;  // in place of frequencies
  bool toolbar = true;
};

ViewSettings load_view_settings();
void store_view_settings(const ViewSettings& settings);

/// Line and station on show; empty without one.
std::string place_on_show();

/// Notes a place under the path of the open survey; nothing where it is empty.
void remember_place(const std::string& place);

/// The station of the open survey that was looked at last, from 1; the first one where that isn't known or is
/// there no more.
std::int32_t remembered_station();

}  // namespace Module_Brenlox
