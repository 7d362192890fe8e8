#include "display/selection.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "display/plan_view.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

namespace {

namespace averaged = Module_averaged_data;

dao::Recordset rows_of(std::string_view statement) {
  return Module_database::open_survey().database.open_recordset(statement);
}

void clear_selection() {
  SessionState& state = session();
  state.station_count = 0;
  state.stations_in_line = 0;
  state.line_count = 0;
  state.station_table.clear();
  state.station_line.clear();
  state.station_value.clear();
  state.station_name.clear();
  state.station_id.clear();
  state.line_of_station.clear();
  state.first_station_of_line.clear();
  state.current_station_index = -1;
  state.current_station = no_current_station;
  state.current_line.clear();
  state.current_line_index = 1;
  state.current_profile_column = 0;
  state.current_reference_type = -1;
  state.current_data_type.clear();
  state.current_dipole = 0.0F;
  state.current_scan_rate = 0.0;
  averaged::reset_data_sets();
  session().plan_window = {};
}

void read_reference_types(SelectionLists& lists) {
  for (const std::int32_t type : Module_database::listed_reference_types()) {
    lists.reference_types.push_back({reference_type_text(type), type});
  }
}

void read_data_types(SelectionLists& lists) {
  dao::Recordset rows = rows_of("SELECT DISTINCT DataType FROM ReadingsDataTable WHERE " +
                                std::string(Module_database::no_tipper_criterion) + " ORDER BY DataType");
  Module_database::for_each_sound_row(rows, [&](const dao::Recordset& row) {
    const std::string& type = lists.data_types.emplace_back(row.get_text("DataType"));
    if (type == "ExHy" || type == "EyHx") {
      lists.data_type_index = static_cast<std::int32_t>(lists.data_types.size()) - 1;
    }
  });
  if (!lists.data_types.empty()) {
    session().current_data_type = lists.data_types[static_cast<std::size_t>(lists.data_type_index)];
  }
}

void read_dipoles(SelectionLists& lists) {
  dao::Recordset rows = rows_of("SELECT DISTINCT DipoleLength FROM ReadingsDataTable ORDER BY DipoleLength");
  Module_database::for_each_sound_row(
      rows, [&](const dao::Recordset& row) { lists.dipoles.push_back(row.get_single("DipoleLength")); });
}

void read_stations(SelectionLists& lists) {
  SessionState& state = session();
  for (Module_database::ListedStation& listed : Module_database::listed_stations()) {
    ++state.station_count;
    if (lists.lines.empty() || lists.lines.back() != listed.line) {
      lists.lines.push_back(listed.line);
      state.first_station_of_line.push_back(state.station_count);
    }
    state.station_table.push_back(listed.place);
    state.station_line.push_back(std::move(listed.line));
    state.station_value.push_back(listed.station);
    state.station_name.push_back(std::move(listed.name));
    state.station_id.push_back(listed.ID);
    state.line_of_station.push_back(static_cast<std::int32_t>(lists.lines.size()));
  }
  state.line_count = static_cast<std::int32_t>(lists.lines.size());
  state.first_station_of_line.push_back(state.station_count + 1);
}

int read_lists(SelectionLists& lists) {
  SessionState& state = session();
  read_reference_types(lists);
  if (lists.reference_types.empty()) {
    return 0;
  }
  read_data_types(lists);
  read_dipoles(lists);
  if (lists.dipoles.empty()) {
    return 0;
  }
  state.current_dipole = lists.dipoles.front();
  read_stations(lists);
  fit_plan_window();
  if (state.station_count > 0) {
    state.stations_in_line = state.first_station_of_line[1] - 1;
  }
  state.current_reference_type = lists.reference_types.front().reference_type;
  return Module_database::load_selected_frequencies();
}

/// @return false if the station is gone
bool keep_station(const Module_database::ReadingKey& before, SelectionLists& lists) {
  const SessionState& state = session();
  for (std::int32_t index = 1; index <= state.station_count; ++index) {
    const auto at = static_cast<std::size_t>(index) - 1;
    if (state.station_line[at] == before.line && state.station_value[at] == before.station) {
      lists.station_index = index;
      return true;
    }
  }
  return false;
}

/// Reference type, data type and dipole as before, each if the survey still has it.
int keep_kind(const Module_database::ReadingKey& before, const SelectionLists& lists) {
  SessionState& state = session();
  if (std::ranges::find(lists.data_types, before.data_type) != lists.data_types.end()) {
    state.current_data_type = before.data_type;
  }
  if (std::ranges::find(lists.dipoles, before.dipole) != lists.dipoles.end()) {
    state.current_dipole = before.dipole;
  }
  const auto& types = lists.reference_types;
  if (state.current_reference_type == before.reference_type ||
      std::ranges::find(types, before.reference_type, &ReferenceTypeItem::reference_type) == types.end()) {
    return 0;
  }
  state.current_reference_type = before.reference_type;
  return Module_database::load_selected_frequencies();
}

/// Has everything of a station loaded again: profile, curves, repeats.
Redisplay reselect(std::int32_t station_index) {
  SessionState& state = session();
  state.current_station = no_current_station;
  state.current_station_index = -1;
  state.current_line.clear();
  state.repeat_count = 0;
  Redisplay redisplay;
  redisplay.close_rhoplus_results = true;
  redisplay.station_to_display = station_index;
  return redisplay;
}

/// The same station with other readings: who compares components doesn't want to look for the place again.
Redisplay reselect_in_place() {
  const std::int32_t displayed = session().current_station_index;
  return reselect(displayed > 0 ? displayed : first_station_of_current_line());
}

/// Whether the profile that is loaded is that of the selected line, type, component and dipole length.
bool profile_is_selected() {
  const Module_database::ReadingKey selected = averaged::selected_key();
  Module_database::ReadingKey loaded = averaged::data_sets().profile.key;
  loaded.station = selected.station;  // a profile has none of its own
  return averaged::same_station(loaded, selected);
}

/// The station's line, with its profile if that isn't loaded.
void enter_line(std::int32_t station_index, Redisplay& redisplay) {
  SessionState& state = session();
  const auto line = static_cast<std::size_t>(state.current_line_index);
  state.stations_in_line = state.first_station_of_line[line] - state.first_station_of_line[line - 1];
  const std::string& name = state.station_line[static_cast<std::size_t>(station_index) - 1];
  redisplay.close_rhoplus_results = !state.current_line.empty() && name != state.current_line;
  const bool same_line = name == state.current_line;
  state.current_line = name;
  if (same_line && profile_is_selected()) {
    return;
  }
  state.current_station = no_current_station;
  state.repeat_count = 0;
  redisplay.failed = averaged::load_selected_profile() != 0;
  redisplay.draw_profile = true;
}

void find_profile_column(std::int32_t station_index) {
  const auto& columns = averaged::data_sets().profile.columns;
  const std::int32_t StationID = session().station_id[static_cast<std::size_t>(station_index) - 1];
  const auto found = std::ranges::find(columns, StationID, &averaged::ProfileColumn::StationID);
  session().current_profile_column =
      found == columns.end() ? 0 : static_cast<std::int32_t>(found - columns.begin()) + 1;
}

/// Without a merged curve on the line there is nothing to show; what another line left must not stay.
void show_nothing(Redisplay& redisplay) {
  averaged::data_sets().station = {};
  averaged::reset_repeat_data();
  redisplay.mark_station = true;
  redisplay.draw_station = true;
  redisplay.draw_raw = true;
}

}  // namespace

std::string reference_type_text(std::int32_t reference_type) {
  switch (reference_type) {
    case 0:
      return "Not Remote Ref";
    case 1:
      return "Remote Ref";
    default:
      return "Cross Ref";
  }
}

int fill_selection_lists(SelectionLists& lists) {
  lists = {};
  const ScopedValue updating(session().updating_controls, true);
  clear_selection();
  return trap_errors("An error occurred while reading the stations: ", [&] { return read_lists(lists); });
}

int refill_selection_lists(SelectionLists& lists) {
  const Module_database::ReadingKey before = averaged::selected_key();
  const double scan_rate = session().current_scan_rate;
  if (fill_selection_lists(lists) != 0) {
    return -1;
  }
  if (keep_station(before, lists)) {
    session().current_scan_rate = scan_rate;
  }
  return keep_kind(before, lists);
}

Redisplay display_station(std::int32_t station_index, const NeighbourOptions& neighbours) {
  SessionState& state = session();
  Redisplay redisplay;
  if (station_index == state.current_station_index || station_index < 1 ||
      station_index > state.station_count) {
    return redisplay;
  }
  const auto at = static_cast<std::size_t>(station_index) - 1;
  state.current_station_index = station_index;
  state.current_line_index = state.line_of_station[at];
  redisplay.show_line = true;
  enter_line(station_index, redisplay);
  find_profile_column(station_index);
  if (averaged::data_sets().profile.columns.empty()) {
    show_nothing(redisplay);
    return redisplay;
  }
  const double station = state.station_value[at];
  if (state.current_station == 0.0 || state.current_station != station) {
    state.repeat_count = 0;
    state.current_station = station;
    redisplay.mark_station = true;
    redisplay.draw_station = true;
    redisplay.failed |= averaged::load_selected_station(neighbours) != 0;
  }
  if (state.repeat_count == 0) {
    redisplay.draw_raw = true;
    redisplay.failed |= averaged::load_selected_repeats() != 0;
  }
  return redisplay;
}

Redisplay choose_line(std::int32_t list_index, const std::string& line) {
  if (session().updating_controls || line == session().current_line || list_index < 0 ||
      list_index >= session().line_count) {
    return {};
  }
  session().current_line_index = list_index + 1;
  return reselect(first_station_of_current_line());
}

Redisplay choose_data_type(const std::string& data_type) {
  if (session().updating_controls || data_type == session().current_data_type) {
    return {};
  }
  session().current_data_type = data_type;
  return reselect_in_place();
}

Redisplay choose_reference_type(std::int32_t reference_type) {
  if (reference_type == session().current_reference_type) {
    return {};
  }
  session().current_reference_type = reference_type;
  const int status = Module_database::load_selected_frequencies();
  Redisplay redisplay = reselect_in_place();
  redisplay.failed = status != 0;
  return redisplay;
}

Redisplay choose_dipole(float dipole) {
  if (session().updating_controls) {
    return {};
  }
  session().current_dipole = dipole;
  Redisplay redisplay;
  redisplay.close_rhoplus_results = true;
  return redisplay;
}

Redisplay choose_scan_rate(const std::string& scan_rate_text) {
  if (!is_numeric(scan_rate_text) ||
      scan_rate_text == plain_text(static_cast<float>(session().current_scan_rate))) {
    return {};
  }
  // A list shows seven digits; readings are looked up by the stored single, which may need more.
  const std::vector<float>& rates = averaged::data_sets().station.scan_rates;
  const auto listed = std::ranges::find(rates, scan_rate_text, [](float rate) { return plain_text(rate); });
  session().current_scan_rate =
      listed == rates.end() ? numeric_value(scan_rate_text) : decimal_of_single(*listed);
  Redisplay redisplay;
  redisplay.failed = averaged::load_repeats_of_shown_station() != 0;
  redisplay.draw_raw = true;
  return redisplay;
}

Redisplay choose_station_in_line(std::int32_t place_in_line) {
  const std::int32_t index = first_station_of_current_line() + place_in_line - 1;
  if (session().updating_controls || first_station_of_current_line() < 1 ||
      index == session().current_station_index) {
    return {};
  }
  Redisplay redisplay;
  redisplay.station_to_display = index;
  return redisplay;
}

int neighbour_count_of(std::string& text) {
  constexpr double max_count = 1e6;  // more than any line has
  const double count = is_numeric(text) ? numeric_value(text) : 0.0;
  if (!(count > 0.0)) {
    text = "2";
    return 0;
  }
  return static_cast<int>(std::min(count, max_count));
}

Redisplay neighbours_changed() {
  SessionState& state = session();
  if (state.updating_controls || state.current_station_index < 1) {
    return {};
  }
  Redisplay redisplay;
  redisplay.station_to_display = state.current_station_index;
  state.current_station_index = -1;
  state.current_station = no_current_station;
  return redisplay;
}

Redisplay fixed_scale_changed() {
  Redisplay redisplay;
  if (!session().updating_controls && session().current_station_index > 0) {
    redisplay.draw_station = true;
    redisplay.draw_raw = true;
  }
  return redisplay;
}

Redisplay choose_hide_masked(bool hide) {
  Redisplay redisplay;
  if (!session().updating_controls) {
    session().hide_masked_data = hide;
    redisplay.draw_profile = true;
    redisplay.draw_station = true;
    redisplay.draw_raw = true;
  }
  return redisplay;
}

std::int32_t first_station_of_current_line() {
  const SessionState& state = session();
  if (state.current_line_index < 1 || state.current_line_index > state.line_count) {
    return -1;
  }
  return state.first_station_of_line[static_cast<std::size_t>(state.current_line_index) - 1];
}

std::int32_t station_index_of(std::int32_t StationID) {
  const auto& IDs = session().station_id;
  const auto found = std::ranges::find(IDs, StationID);
  return found == IDs.end() ? -1 : static_cast<std::int32_t>(found - IDs.begin()) + 1;
}

Redisplay readings_changed() {
  const std::int32_t displayed = session().current_station_index;
  if (displayed < 1) {
    return {};
  }
  Redisplay redisplay = reselect(displayed);
  redisplay.close_rhoplus_results = false;
  return redisplay;
}

DisplayedStation::DisplayedStation()
    : data_sets_(averaged::data_sets()),
      station_index_(session().current_station_index),
      profile_column_(session().current_profile_column),
      line_index_(session().current_line_index),
      stations_in_line_(session().stations_in_line),
      repeat_count_(session().repeat_count),
      line_(session().current_line),
      station_(session().current_station),
      scan_rate_(session().current_scan_rate) {}

void DisplayedStation::put_back() const {
  averaged::data_sets() = data_sets_;
  SessionState& state = session();
  state.current_station_index = station_index_;
  state.current_profile_column = profile_column_;
  state.current_line_index = line_index_;
  state.stations_in_line = stations_in_line_;
  state.repeat_count = repeat_count_;
  state.current_line = line_;
  state.current_station = station_;
  state.current_scan_rate = scan_rate_;
}

std::int32_t place_in_line() {
  const std::int32_t first = first_station_of_current_line();
  const std::int32_t current = session().current_station_index;
  return first < 1 || current < 1 ? 0 : current - first + 1;
}

}  // namespace Module_display_data
