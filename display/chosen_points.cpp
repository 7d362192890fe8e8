#include "display/chosen_points.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "display/both_modes.h"
#include "platform/graph/plot_table.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/set_points.h"

namespace Module_display_data {

namespace {

using namespace Module_averaged_data;

std::set<MarkedPoint>& chosen() {
  static std::set<MarkedPoint> points;
  return points;
}

void choose_of(const StoredReading& reading, std::size_t point, Component component) {
  if (reading.ID != 0 && point < reading.curve.count()) {
    chosen().insert({reading.ID, reading.curve.frequencies[point], component});
  }
}

/// Whether a point of a curve is drawn while masked ones are hidden.
bool counts_in(const StoredReading& reading, const MarkedPoint& point) {
  const int field = static_cast<int>(point.component) + 1;
  const bool used = point.component == Component::resistivity ? reading.UseResistivity : reading.UsePhase;
  const auto& frequencies = reading.curve.frequencies;
  const auto found = std::ranges::find(frequencies, point.frequency);
  return reading.UseReading && used && found != frequencies.end() &&
         reading.curve.counts_at(field, static_cast<std::size_t>(found - frequencies.begin())) != 0;
}

/// The readings on show that can be masked, by their ID.
struct ShownReadings {
  std::map<std::int32_t, const StoredReading*> curves;
  std::map<std::int32_t, const ProfileColumn*> columns;

  ShownReadings() {
    add(data_sets().repeats.slots);
    add(data_sets().station.slots);
    add(other_mode().repeats.slots);
    add(other_mode().station.slots);
    for (const ProfileColumn& column : data_sets().profile.columns) {
      columns.emplace(column.ID, &column);
    }
  }

  template <class Slot>
  void add(const std::vector<Slot>& slots) {
    for (const Slot& slot : slots) {
      curves.emplace(slot.reading.ID, &slot.reading);
    }
  }

  [[nodiscard]] bool show(const MarkedPoint& point) const {
    if (session().frequencies.enabled_position(point.frequency) < 0) {
      return false;
    }
    if (columns.contains(point.ID)) {  // the profile hides no masked point
      return true;
    }
    const auto found = curves.find(point.ID);
    return found != curves.end() && (!session().hide_masked_data || counts_in(*found->second, point));
  }

  /// Whether a point isn't masked; nothing of one that has no value.
  [[nodiscard]] std::optional<bool> counts(const MarkedPoint& point) const {
    const int field = static_cast<int>(point.component) + 1;
    if (const auto curve = curves.find(point.ID); curve != curves.end()) {
      const Module_database::Curve& values = curve->second->curve;
      const auto at = place_of(point.frequency, values.frequencies);
      return at && values.is_present(field, *at) ? std::optional(values.counts_at(field, *at) == 1)
                                                 : std::nullopt;
    }
    const auto column = columns.find(point.ID);
    const auto at = place_of(point.frequency, data_sets().profile.frequencies);
    if (column == columns.end() || !at) {
      return std::nullopt;
    }
    const bool phase = point.component == Component::phase;
    const float value = (phase ? column->second->phase : column->second->resistivity)[*at];
    return is_absent(double{value})
               ? std::nullopt
               : std::optional(column->second->mask[*at][static_cast<std::size_t>(point.component)] == 1);
  }

  static std::optional<std::size_t> place_of(float frequency, const std::vector<float>& list) {
    const auto found = std::ranges::find(list, frequency);
    return found == list.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - list.begin()));
  }
};

}  // namespace

void choose_raw_points(Component component, std::span<const PlotPlace> places) {
  for (const PlotPlace& at : places) {
    if (const RepeatSlot* const slot = shown_repeat_slot(at.series)) {
      choose_of(slot->reading, at.point, component);
    }
  }
}

void choose_station_points(Component component, std::span<const PlotPlace> places) {
  for (const PlotPlace& at : places) {
    const StationSlot* const slot = shown_station_slot(at.series);
    if (slot != nullptr && slot->kind != StationSlotKind::neighbour &&
        slot->kind != StationSlotKind::other_merged) {
      choose_of(slot->reading, at.point, component);
    }
  }
}

void choose_profile_points(Component component, std::span<const PlotPlace> places) {
  const ProfileDataSet& data = data_sets().profile;
  for (const PlotPlace& at : places) {
    if (at.series < data.frequencies.size() && at.point < data.columns.size()) {
      chosen().insert({data.columns[at.point].ID, data.frequencies[at.series], component});
    }
  }
}

void choose_points(std::span<const MarkedPoint> points) { chosen().insert(points.begin(), points.end()); }

void forget_chosen_points() { chosen().clear(); }

void keep_chosen_points_shown() {
  if (!chosen().empty()) {
    const ShownReadings shown;
    std::erase_if(chosen(), [&](const MarkedPoint& point) { return !shown.show(point); });
  }
}

std::size_t chosen_count() { return chosen().size(); }

bool is_chosen(const MarkedPoint& point) { return chosen().contains(point); }

std::string chosen_text() {
  const std::size_t count = chosen_count();
  if (count == 0) {
    return {};
  }
  return plain_text(static_cast<std::int64_t>(count)) +
         (count == 1 ? " point marked: Delete masks it, Shift+Delete unmasks it, Esc leaves it"
                     : " points marked: Delete masks them, Shift+Delete unmasks them, Esc leaves them");
}

int ring_of(const MarkedPoint& point) {
  return (is_marked(point) ? graph::ringed : 0) + (is_chosen(point) ? graph::chosen : 0);
}

void ring_last_curve(GraphPair& plot, const StoredReading& reading) {
  const auto ring = [&](PanePlot& pane, Component component) {
    std::vector<int>& styles = pane.point_styles.back();
    for (std::size_t i = 0; i < styles.size(); ++i) {
      styles[i] += ring_of({reading.ID, reading.curve.frequencies[i], component});
    }
  };
  ring(plot.resistivity, Component::resistivity);
  ring(plot.phase, Component::phase);
}

bool chosen_points_are(bool unmasked) {
  const ShownReadings shown;
  return std::ranges::all_of(chosen(), [&](const MarkedPoint& point) {
    const std::optional<bool> counts = shown.counts(point);
    return !counts || *counts == unmasked;
  });
}

Edit mask_chosen_points(bool counts) {
  if (session().updating_controls || chosen().empty()) {
    return Edit::nothing;
  }
  std::vector<CurvePoints> curves;
  for (const MarkedPoint& point : chosen()) {  // ascending by reading
    if (curves.empty() || curves.back().ID != point.ID) {
      curves.push_back({point.ID, {}});
    }
    curves.back().points.push_back({point.frequency, point.component, counts});
  }
  const ScopedValue updating(session().updating_controls, true);
  const Edit edit = set_points(curves);
  if (edit == Edit::changed) {
    forget_chosen_points();
  }
  return edit;
}

}  // namespace Module_display_data
