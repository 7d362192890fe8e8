#include "tensor/windows/shown_line.h"

#include <algorithm>

#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "display/selection.h"

using Module_tensor::LineChoice;
using Module_tensor::StationTensor;

std::optional<LineChoice> ShownLine::selected() {
  const SessionState& state = session();
  if (!state.database_open || state.station_count == 0 || state.current_station_index < 1) {
    return std::nullopt;
  }
  return LineChoice{state.current_line, state.current_reference_type, state.current_dipole};
}

const Module_tensor::LineTensors& ShownLine::line() {
  if (!loaded_) {
    loaded_ = true;
    line_ = {};
    if (const auto choice = selected()) {
      const BusyPointer busy;
      static_cast<void>(load_line_tensors(*choice, session().frequencies, line_));
    }
  }
  return line_;
}

Module_display_data::LineAxis& ShownLine::axis() {
  axis_.take_line(line().curves.choice.line);
  static_cast<void>(axis_.choose(positions_));
  return axis_;
}

std::optional<std::size_t> ShownLine::station_index() {
  const auto& stations = line().stations;
  const auto found = std::ranges::find(stations, session().current_station, &StationTensor::station);
  return found == stations.end() ? std::nullopt
                                 : std::optional(static_cast<std::size_t>(found - stations.begin()));
}

std::optional<std::int32_t> ShownLine::station_id() {
  const SessionState& state = session();
  const auto index = static_cast<std::size_t>(state.current_station_index) - 1;
  return state.database_open && state.current_station_index > 0 && index < state.station_id.size()
             ? std::optional(state.station_id[index])
             : std::nullopt;
}

void ShownLine::follow_selection() {
  const auto choice = selected();
  if (!choice || !loaded_ || !(*choice == line_.curves.choice)) {
    drop_line();
    return;
  }
  Q_EMIT station_changed();
}

void ShownLine::follow_edit() {
  if (!announcing_) {
    read_again(session().current_station);
  }
}

void ShownLine::read_again(std::optional<double> station) {
  if (!station || !loaded_) {
    forget();
    return;
  }
  static_cast<void>(reload_station(*station, session().frequencies, line_));
  Q_EMIT line_changed();
}

void ShownLine::forget() {
  Q_EMIT survey_changed();
  drop_line();
}

void ShownLine::drop_line() {
  loaded_ = false;
  line_ = {};
  axis_.reset();
  Q_EMIT line_changed();
}

void ShownLine::set_positions(Module_display_data::PositionSource source) {
  positions_ = source;
  Q_EMIT line_changed();
}

void ShownLine::choose(double station, double frequency, const QString& data_type) {
  const auto& stations = line().stations;
  const auto found = std::ranges::find(stations, station, &StationTensor::station);
  if (found != stations.end()) {
    choose_site(found->StationID, frequency, data_type);
  }
}

void ShownLine::choose_site(std::int32_t StationID, double frequency, const QString& data_type) {
  if (const auto index = Module_display_data::station_index_of(StationID); index > 0) {
    Q_EMIT station_chosen(index, frequency, data_type);
  }
}

void ShownLine::announce_edit(std::optional<double> station) {
  {
    const ScopedValue announcing(announcing_, true);
    Q_EMIT edited();
  }
  read_again(station);
}

void ShownLine::announce_marks() {
  const ScopedValue announcing(announcing_, true);
  Q_EMIT marks_changed();
}

void ShownLine::use_strike(double strike) { Q_EMIT strike_chosen(strike); }
