// selection.h: the lists that the user chooses from, and what each choice loads and has drawn again.
//
// Procedures here change the session's selection and load data sets; they draw nothing. A handler returns at
// once, without effect, while session().updating_controls is set, except where it says otherwise.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

using Module_averaged_data::NeighbourOptions;

struct ReferenceTypeItem {
  std::string text;
  std::int32_t reference_type = 0;
};

/// How readings were referenced, in words: "Remote Ref".
std::string reference_type_text(std::int32_t reference_type);

struct SelectionLists {
  std::vector<ReferenceTypeItem> reference_types;
  std::vector<std::string> data_types;
  std::int32_t data_type_index = 0;  // the one selected at first
  std::vector<float> dipoles;        // m
  std::vector<std::string> lines;
  std::int32_t station_index = 1;  // from 1, the one to display first
};

/// Reads the lists and the stations of the open survey, selects the first line, dipole and reference type and
/// the principal data type, loads the frequency list, and fits the plan. No station is selected yet. Has
/// effect whatever updating_controls says.
/// @param lists empty from where the survey has nothing to show
/// @return 0, or -1 after a message
[[nodiscard]] int fill_selection_lists(SelectionLists& lists);

/// Reads the lists again after the survey has changed, and keeps what was selected as far as it is still
/// there: reference type, data type, dipole, station and scan rate.
[[nodiscard]] int refill_selection_lists(SelectionLists& lists);

/// What the window has to do after a choice, in this order.
struct Redisplay {
  bool failed = false;  // after a message; what was loaded is to be drawn
  bool close_rhoplus_results = false;
  std::int32_t station_to_display = -1;  // display_station with it, from 1; -1: no
  bool show_line = false;                // the line's list, the range of the station bar
  bool draw_profile = false;
  bool mark_station = false;  // line on the profile, number, check boxes, static factor
  bool draw_station = false;
  bool draw_raw = false;
};

/// Selects a station (from 1), loading the line's profile if the line is new, the station's curves and the
/// repeats of the scan rate. Has effect whatever updating_controls says.
[[nodiscard]] Redisplay display_station(std::int32_t station_index, const NeighbourOptions& neighbours);

// The choices in the selection row. List indices count from 0.
[[nodiscard]] Redisplay choose_line(std::int32_t list_index, const std::string& line);
[[nodiscard]] Redisplay choose_data_type(const std::string& data_type);
/// Has effect whatever updating_controls says, as its test for change is enough.
[[nodiscard]] Redisplay choose_reference_type(std::int32_t reference_type);
/// Loads nothing: the next display of a station takes the dipole length into account, profile and all. Until
/// then what is shown is edited.
[[nodiscard]] Redisplay choose_dipole(float dipole);
/// Has effect whatever updating_controls says. A text that is not a number is ignored.
[[nodiscard]] Redisplay choose_scan_rate(const std::string& scan_rate_text);
/// @param place_in_line value of the station bar, from 1
[[nodiscard]] Redisplay choose_station_in_line(std::int32_t place_in_line);
/// The number of neighbours that a text asks for. A text that is not a positive number becomes "2" and asks
/// for none yet.
int neighbour_count_of(std::string& text);
/// The station's curves are to be loaded with other neighbours.
[[nodiscard]] Redisplay neighbours_changed();
[[nodiscard]] Redisplay fixed_scale_changed();
[[nodiscard]] Redisplay choose_hide_masked(bool hide);

/// The first station of the current line, from 1; -1 without a current line.
std::int32_t first_station_of_current_line();

/// A station by the ID of its row, from 1; -1 if the lists don't have it.
std::int32_t station_index_of(std::int32_t StationID);

/// The place of the current station in its line, from 1; 0 if none is selected.
std::int32_t place_in_line();

/// The readings have been computed again; stations and lists are as before: the same station is to be
/// displayed with everything loaded anew.
[[nodiscard]] Redisplay readings_changed();

/// The displayed station with all that is loaded for it. Work that loads stations for itself keeps it and
/// puts it back, so that graphs drawn before go on showing what a click edits. Line and stations of the
/// survey have to stay the same meanwhile.
class DisplayedStation {
 public:
  /// Keeps what is displayed now.
  DisplayedStation();
  void put_back() const;

 private:
  Module_averaged_data::DataSets data_sets_;
  std::int32_t station_index_;
  std::int32_t profile_column_;
  std::int32_t line_index_;
  std::int32_t stations_in_line_;
  std::int32_t repeat_count_;
  std::string line_;
  double station_;
  double scan_rate_;
};

}  // namespace Module_display_data
