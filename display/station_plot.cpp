#include "display/station_plot.h"

#include <algorithm>

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/plot_colours.h"
#include "reduction/data_sets/profile_data_set.h"
#include "reduction/data_sets/station_data_set.h"

namespace Module_display_data {

using Module_averaged_data::StationSlot;
using Module_averaged_data::StationSlotKind;

namespace {

graph::SeriesStyle style_of(const StationSlot& slot, std::size_t series) {
  graph::SeriesStyle style;
  switch (slot.kind) {
    case StationSlotKind::merged:
      style.colour = black;
      style.width = 3.0;
      break;
    case StationSlotKind::average:
      style.colour = repeat_colour(static_cast<int>(series));
      style.width = 2.0;
      break;
    case StationSlotKind::file:
      style.colour = repeat_colour(static_cast<int>(series));
      break;
    case StationSlotKind::other_merged:
      style.colour = cyan;
      break;
    case StationSlotKind::neighbour:
      style.colour = slot.station_index < session().current_station_index ? blue : cyan;
      break;
  }
  return style;
}

/// Neighbours are there to be compared; their bars would hide the curve of the station itself.
ErrorBars error_bars_of(const StationSlot& slot) {
  return slot.kind != StationSlotKind::neighbour && has_deviations(slot.reading) ? ErrorBars::deviations
                                                                                 : ErrorBars::none;
}

void override_points(PanePlot& pane, const StationSlot& slot) {
  if (slot.colour_number) {
    std::ranges::fill(pane.point_styles.back(), *slot.colour_number);
  }
}

}  // namespace

GraphPair station_plot(bool fixed_scale) {
  const auto& data = Module_averaged_data::station_data_set();
  GraphPair plot;
  const double factor = data.slots.empty() ? 1.0 : double{data.slots.front().reading.ResOffset};
  for (std::size_t k = 0; k < data.slots.size(); ++k) {
    const StationSlot& slot = data.slots[k];
    const Visibility visibility{session().hide_masked_data, slot.reading.UseReading,
                                slot.reading.UseResistivity, slot.reading.UsePhase};
    add_curve(plot, slot.reading.curve, slot.list_position, visibility, factor, error_bars_of(slot));
    for (PanePlot* const pane : {&plot.resistivity, &plot.phase}) {
      pane->series_styles.back() = style_of(slot, k);
      override_points(*pane, slot);
    }
  }
  set_frequency_axes(plot, data.extents.frequency);
  if (fixed_scale) {
    set_value_axes(plot, Module_averaged_data::profile_data_set().extents, {0.2, 0.05});
  } else {
    set_value_axes(plot, data.extents, {0.2, 0.1});
  }
  return plot;
}

std::string station_label() { return "Merge/averages for " + format_number(session().current_station, "0"); }

std::string station_series_label(std::size_t slot) {
  const auto& slots = Module_averaged_data::station_data_set().slots;
  if (slot >= slots.size()) {
    return {};
  }
  switch (slots[slot].kind) {
    case StationSlotKind::merged:
      return "Merged data";
    case StationSlotKind::average:
      return "Averaged data for " + plain_text(slots[slot].SampleRate);
    case StationSlotKind::file:
      return "Averaged file for " + plain_text(slots[slot].SampleRate);
    case StationSlotKind::other_merged:
      return "Merged file data";
    case StationSlotKind::neighbour:
      break;
  }
  return "Merged for " + plain_text(slots[slot].station);
}

}  // namespace Module_display_data
