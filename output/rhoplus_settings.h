// rhoplus_settings.h: the settings of Rho+ one-dimensional inversion, stored for each user.
#pragma once
#include <cstdint>
#include <string>

namespace Module_output {

struct RhoplusSettings {
  std::string root_name = "tmd";         // files are named root_station
  std::int32_t surface = 1;              // 0 conducting, 1 insulating
  float resistivity_error_floor = 4.0F;  // percent of the resistivity
  float phase_error_floor = 2.0F;        // degrees
  float resistivity_scale = 1.0F;        // multiplies resistivities, on top of the static factor
  std::int32_t exclude_data = 1;         // 1: frequencies without any used value are left out
  std::int32_t apply_static = 1;         // 1: the static factor of the merged curve multiplies resistivities
  std::int32_t exclude_negative_phase = 1;  // 1: a phase of 0 or less counts as unused
  std::int32_t use_file_errors = 0;  // 1: no error is below that of the point's files, also in a 2D run
};

/// The user's current settings: loaded when the program starts, edited in the options window. Whoever opens a
/// window or starts a run hands them down; procedures take theirs as an argument.
RhoplusSettings& rhoplus_settings();

/// What the user's settings store holds, as far as it is valid, and defaults for the rest.
RhoplusSettings load_rhoplus_settings();

/// Writes all settings to the user's store. The scale goes under another key than the one it is read from:
/// it belongs to one survey's calibration, so each start begins at the stored start value, 1 unless it has
/// been set there.
void save_rhoplus_settings(const RhoplusSettings& settings);

// Typed entries: each takes its value if it is valid and keeps the earlier one otherwise, without a message.
// They return whether it is valid.
bool enter_root_name(RhoplusSettings& settings, const std::string& text);  // any text but blanks
bool enter_positive(float& setting, const std::string& text);              // a number above 0

}  // namespace Module_output
