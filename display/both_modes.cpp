#include "display/both_modes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/session_state.h"
#include "core/trap_errors.h"

namespace Module_display_data {

namespace averaged = Module_averaged_data;
using averaged::StationSlot;
using averaged::StationSlotKind;

namespace {

OtherMode& loaded() {
  static OtherMode mode;
  return mode;
}

bool& asked_for_both() {
  static bool asked = false;
  return asked;
}

/// Neighbours are compared by one curve each; averages would hide them.
void leave_out_averages(averaged::StationDataSet& station) {
  std::erase_if(station.slots, [](const StationSlot& slot) {
    return slot.kind == StationSlotKind::average || slot.kind == StationSlotKind::file;
  });
}

int load_station(const averaged::StationDataSet& own, const std::string& data_type) {
  if (own.slots.empty()) {
    return 0;
  }
  Module_database::ReadingKey key = own.key;
  key.data_type = data_type;
  const int status =
      averaged::load_station_data(key, averaged::NeighbourOptions(), session().frequencies, loaded().station);
  if (own.neighbours.show) {
    leave_out_averages(loaded().station);
  }
  return status;
}

int load_repeats(const averaged::RepeatDataSet& own, const std::string& data_type) {
  if (own.slots.empty()) {
    return 0;
  }
  Module_database::ReadingKey key = own.key;
  key.data_type = data_type;
  return averaged::load_repeat_data(key, session().frequencies, loaded().repeats);
}

int load_unsupported() {
  const Module_database::ReadingKey& key = loaded().station.key;
  return trap_errors("An error occurred while reading the station: ", [&] {
    loaded().unsupported =
        averaged::unsupported_curves({key.line, key.reference_type, key.data_type, key.dipole}, key.station);
  });
}

template <class Slot>
const Slot* slot_of(const std::vector<Slot>& own, const std::vector<Slot>& other, std::size_t series) {
  if (series < own.size()) {
    return &own[series];
  }
  return series - own.size() < other.size() ? &other[series - own.size()] : nullptr;
}

}  // namespace

std::string other_mode_of(std::string_view data_type) {
  using Pair = std::pair<std::string_view, std::string_view>;
  constexpr std::array<Pair, 4> pairs{
      {{"ExHy", "EyHx"}, {"EyHx", "ExHy"}, {"ExHx", "EyHy"}, {"EyHy", "ExHx"}}};
  for (const auto& [one, other] : pairs) {
    if (one == data_type) {
      return std::string(other);
    }
  }
  return {};
}

void ask_for_both_modes(bool asked) { asked_for_both() = asked; }

const OtherMode& other_mode() { return loaded(); }

int load_other_mode() {
  loaded() = {};
  const averaged::DataSets& own = averaged::data_sets();
  const std::string data_type = other_mode_of(own.station.key.data_type);
  if (!asked_for_both() || data_type.empty()) {
    return 0;
  }
  int status = load_station(own.station, data_type);
  if (status == 0 && !loaded().station.slots.empty()) {
    status = load_unsupported();
  }
  return status != 0 ? status : load_repeats(own.repeats, data_type);
}

const StationSlot* shown_station_slot(std::size_t series) {
  return slot_of(averaged::data_sets().station.slots, loaded().station.slots, series);
}

const averaged::RepeatSlot* shown_repeat_slot(std::size_t series) {
  return slot_of(averaged::data_sets().repeats.slots, loaded().repeats.slots, series);
}

bool is_unsupported_curve(std::string_view data_type, double station, float scan_rate) {
  if (data_type == averaged::data_sets().profile.key.data_type) {
    return averaged::is_unsupported(station, scan_rate);
  }
  return std::ranges::any_of(loaded().unsupported, [&](const averaged::UnsupportedCurve& curve) {
    return curve.data_type == data_type && curve.station == station && curve.scan_rate == scan_rate;
  });
}

graph::Colour mode_colour(std::string_view data_type) {
  constexpr graph::Colour of_ex{0, 84, 190};
  constexpr graph::Colour of_ey{208, 88, 0};
  return data_type.starts_with("Ey") ? of_ey : of_ex;
}

graph::Colour pale_mode_colour(std::string_view data_type) {
  const graph::Colour full = mode_colour(data_type);
  const auto paler = [](std::uint8_t part) { return static_cast<std::uint8_t>((part + 255) / 2); };
  return {paler(full.red), paler(full.green), paler(full.blue)};
}

}  // namespace Module_display_data
