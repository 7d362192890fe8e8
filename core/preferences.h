// preferences.h: the preferences file Brenlox.prf, a text of "key : value" lines.
//
// The recent files, the opening picture and the window's size stand in the session. The display scales are
// kept for the sake of the file: they are read and written back, and nothing else uses them.
#pragma once
#include <string>

namespace Module_Brenlox {

struct DisplayPreferences {
  bool auto_scale_spectral_resistivity = false;
  float min_real_resistivity = 0.0F;
  float max_real_resistivity = 0.0F;
  float min_imag_resistivity = 0.0F;
  float max_imag_resistivity = 0.0F;
  bool auto_scale_spectral_e_field = false;
  float min_real_e_field = 0.0F;
  float max_real_e_field = 0.0F;
  float min_imag_e_field = 0.0F;
  float max_imag_e_field = 0.0F;
  bool auto_scale_spectral_h_field = false;
  float min_real_h_field = 0.0F;
  float max_real_h_field = 0.0F;
  float min_imag_h_field = 0.0F;
  float max_imag_h_field = 0.0F;
  bool auto_scale_phase = true;
  float min_phase = 0.0F;
  float max_phase = 50.0F;
  bool auto_scale_cagniard = false;
  float min_cagniard = 0.0F;
  float max_cagniard = 0.0F;
  bool auto_scale_e_phase = true;
  float min_e_phase = 0.0F;
  float max_e_phase = 50.0F;
  bool auto_scale_h_phase = true;
  float min_h_phase = 0.0F;
  float max_h_phase = 50.0F;
  bool auto_scale_e_mag = false;
  float min_e_mag = 0.0F;
  float max_e_mag = 0.0F;
  bool auto_scale_h_mag = false;
  float min_h_mag = 0.0F;
  float max_h_mag = 0.0F;
  bool spectral_plot = false;
  bool plot_e_phase = false;
  bool plot_h_phase = false;
};

DisplayPreferences& display_preferences();

/// Where the preferences are kept; empty before read_preferences, and when the file that is there can't be
/// read.
const std::string& preferences_file();

/// Puts every preference at its default, finds the file and reads it. Looked for in the working directory,
/// the program's own, the per-user configuration directory, in this order; where there is none, a new one is
/// written into the working directory, or the configuration directory if that can't be written to. A file
/// without the right first line is told to the user and leaves the defaults.
///
/// session().recent_count stays 0 until refresh_recent_file_menu.
void read_preferences();

/// Replaces the file by one with every key. Does nothing before read_preferences, so that a file that was
/// never read isn't overwritten by defaults; a failure leaves the earlier file whole.
void write_preferences();

/// Counts the recent files up to the first blank one, drops those behind it and writes the preferences. The
/// menu then shows recent_file_caption(n) for each.
void refresh_recent_file_menu();

/// "&1 path", counted from 1.
std::string recent_file_caption(int number);

/// Puts a file at the head of the recent files; one that is known, in any case, moves up. The sixth falls
/// out. Nothing is written.
void add_recent_file(const std::string& path);

}  // namespace Module_Brenlox
