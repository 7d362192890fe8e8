// session_state.h: the one process-wide record of the open survey and the current selection.
//
// Indices in this record count from 1 where the comment says so: they are what lists and files show. -1 means
// none, in every member.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "core/undo_entry.h"

inline constexpr double station_not_set = -99999.0;  // no station has been given yet
inline constexpr double no_current_station = -1e32;  // nothing is selected; is_absent() is true for it

/// The survey's grid on the map, from which a station without a location gets its map place. Zeros until a
/// survey carries such values in its header: map and local places are then the same.
struct SurveyHeaderValues {
  double grid_azimuth = 0.0;    // degrees
  double local_x_origin = 0.0;  // m
  double local_y_origin = 0.0;
  double map_x_origin = 0.0;
  double map_y_origin = 0.0;
};

struct StationPlace {  // one row of station_table, m
  double local_x = 0.0;
  double local_y = 0.0;
  double map_x = 0.0;
  double map_y = 0.0;
  double elevation = 0.0;
};

struct PlanWindow {         // through which the plan shows the stations
  float plan_zoom = 0.0F;   // 0: to be fitted again
  double plan_base = 0.0;   // m, height of the window at zoom 1
  double plan_x_min = 0.0;  // m, the visible window
  double plan_x_max = 0.0;
  double plan_y_min = 0.0;
  double plan_y_max = 0.0;
  double plan_x_centre = 0.0;
  double plan_y_centre = 0.0;
  double plan_x_extent = 0.0;  // m
  double plan_y_extent = 0.0;
  double plan_x_scale = 0.0;  // picture units for each m; 0 until drawn
  double plan_y_scale = 0.0;
};

/// Facts about the machine, filled once by UTIL::initialise_environment. Those that no procedure reads are
/// for the debug log (names and directories) and for windows and readers to come (display, characters).
struct Environment {
  bool initialised = false;
  std::string user_name;
  std::string computer_name;
  std::string windows_directory;  // where settings are looked for: the per-user configuration directory
  std::string system_directory;
  std::string temporary_directory;
  std::string program_directory;
  std::string application_data_directory;
  int bits_per_pixel = 0;
  int planes = 0;
  float width_millimetres = 0.0F;
  int width_pixels = 0;
  int logical_pixels_per_inch = 0;
  float dots_per_inch = 0.0F;
  std::string escape;
  std::string white_space;
  std::string delimiters;
  float single_epsilon = 0.0F;
  char decimal_point = '.';
  char thousands_point = ',';
};

struct SessionState {
  bool updating_controls = false;  // every selection handler does nothing while it is set
  std::string database_file;       // full path of the survey database
  bool database_open = false;
  bool new_database = false;  // set after creating; nothing reads it yet
  bool data_changed = false;  // set by every store, cleared at opening; nothing reads it yet
  std::string version_text;   // "1.00 February, 2012"

  bool hide_masked_data = false;
  std::int32_t coord_system = 0;  // list index of Combo_coords: 0 Local, 1 Map
  std::int32_t x_column = 1;      // columns of station_table, from 1: 1, 2 for Local; 3, 4 for Map
  std::int32_t y_column = 2;
  PlanWindow plan_window;

  SurveyHeaderValues survey_header;
  std::int32_t station_count = 0;
  std::int32_t stations_in_line = 0;
  std::int32_t line_count = 0;
  std::vector<StationPlace> station_table;  // the entry of station index i, which counts from 1, is at i - 1
  std::vector<std::string> station_line;    // likewise
  std::vector<double> station_value;
  std::vector<std::string> station_name;  // of the site, as its file has it; empty if it has none
  std::vector<std::int32_t> station_id;
  std::vector<std::int32_t> line_of_station;        // line number, from 1, by station
  std::vector<std::int32_t> first_station_of_line;  // station index by line, with one more entry: the end

  std::int32_t current_station_index = -1;  // from 1
  std::int32_t current_profile_column = 0;  // from 1; 0: the station has no merged curve
  std::string current_line;
  std::int32_t current_line_index = 1;  // from 1
  double current_station = no_current_station;
  std::int32_t current_reference_type = -1;
  std::string current_data_type;
  float current_dipole = 0.0F;     // m
  double current_scan_rate = 0.0;  // Hz
  std::int32_t repeat_count = 0;   // 0: the repeats must be reloaded

  Frequencies frequencies;  // of the current reference type
  Module_Brenlox::UndoStack undo_stack;

  std::array<std::string, 6> recent_files;
  std::int32_t recent_count = 0;
  std::string opening_picture;
  float form_width = 0.0F;  // last window size
  float form_height = 0.0F;
  std::int32_t debug_level = 0;
  Environment environment;
};

/// The one record of this process.
SessionState& session();

/// Puts every member back to its value at start; for tests and the start of the process.
void reset_session_state();
