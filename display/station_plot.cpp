#include "display/station_plot.h"

#include <algorithm>
#include <cstdlib>

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/chosen_points.h"
#include "display/plot_colours.h"
#include "display/profile_plot.h"
#include "display/site_names.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

using Module_averaged_data::StationSlot;
using Module_averaged_data::StationSlotKind;

namespace {

constexpr int neighbour_colours = 25;

/// The style of a neighbour's points. Negative numbers are the palette of the graph; which one depends on how
/// many stations away the neighbour is.
int neighbour_style(const StationSlot& neighbour, const StationSlot& own) {
  return -(1 + std::abs(neighbour.station_index - own.station_index) % neighbour_colours);
}

graph::SeriesStyle style_of(const StationSlot& slot, std::size_t series) {
  graph::SeriesStyle style;
  if (!slot.reading.UseReading) {
    style.colour = graph::unused_colour;
    return style;
  }
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

/// Whether there is nothing in use that the curve would be computed from.
bool rests_on_nothing(const StationSlot& slot, const std::string& data_type) {
  const bool is_derived = slot.kind == StationSlotKind::merged || slot.kind == StationSlotKind::average ||
                          slot.kind == StationSlotKind::neighbour;
  return is_derived && slot.reading.ID != 0 &&
         is_unsupported_curve(data_type, slot.station,
                              slot.kind == StationSlotKind::average ? slot.SampleRate : 0.0F);
}

/// Neighbours are there to be compared; their bars would hide the curve of the station itself.
ErrorBars error_bars_of(const StationSlot& slot) {
  return slot.kind == StationSlotKind::neighbour ? ErrorBars::none : ErrorBars::shown;
}

/// With two modes on show the colour says which it is, and the width which curve counts. The selected one is
/// the widest, and so the uppermost, which takes the clicks.
graph::SeriesStyle mode_style_of(const StationSlot& slot, const std::string& data_type) {
  graph::SeriesStyle style;
  const bool merged = slot.kind == StationSlotKind::merged;
  const bool selected = data_type == Module_averaged_data::data_sets().station.key.data_type;
  style.width = merged ? (selected ? 3.0 : 2.0) : 1.0;
  style.colour = merged ? mode_colour(data_type) : pale_mode_colour(data_type);
  if (!slot.reading.UseReading) {
    style.colour = graph::unused_colour;
  }
  return style;
}

/// A merged curve goes through the points of an average of which it is made. As wide as that and later in the
/// order, the average lies above it, where its dashes are seen.
void dash(graph::SeriesStyle& style, const StationSlot& slot, bool of_other_mode) {
  style.dashed = true;
  if (slot.kind == StationSlotKind::average) {
    style.width = of_other_mode ? 2.0 : 3.0;
  }
}

void colour_neighbour(PanePlot& pane, const StationSlot& slot, const StationSlot& own) {
  if (slot.kind == StationSlotKind::neighbour) {
    std::ranges::fill(pane.point_styles.back(),
                      slot.reading.UseReading ? neighbour_style(slot, own) : graph::unused_point);
  }
}

std::string kind_label(const StationSlot& slot) {
  switch (slot.kind) {
    case StationSlotKind::merged:
      return "Merged data";
    case StationSlotKind::average:
      return "Averaged data for " + plain_text(slot.SampleRate);
    case StationSlotKind::file:
      return "Averaged file for " + plain_text(slot.SampleRate);
    case StationSlotKind::other_merged:
      return "Merged file data";
    case StationSlotKind::neighbour:
      break;
  }
  return with_site_name("Merged for " + plain_text(slot.station), slot.station_index);
}

/// Of a slot on show.
const std::string& data_type_of(std::size_t slot) {
  const Module_averaged_data::StationDataSet& own = Module_averaged_data::data_sets().station;
  return slot < own.slots.size() ? own.key.data_type : other_mode().station.key.data_type;
}

/// ", ExHy" while two modes are on show.
std::string mode_ending(std::size_t slot) {
  return other_mode().station.slots.empty() ? "" : ", " + data_type_of(slot);
}

bool any_rests_on_nothing(const Module_averaged_data::StationDataSet& data) {
  return std::ranges::any_of(
      data.slots, [&](const StationSlot& slot) { return rests_on_nothing(slot, data.key.data_type); });
}

void add_station(GraphPair& plot, AxisExtents& axes, const Module_averaged_data::StationDataSet& data,
                 Modes modes) {
  const bool selected = &data == &Module_averaged_data::data_sets().station;
  const double factor = data.slots.empty() ? 1.0 : double{data.slots.front().reading.ResOffset};
  for (std::size_t k = 0; k < data.slots.size(); ++k) {
    const StationSlot& slot = data.slots[k];
    const Visibility visibility{session().hide_masked_data, slot.reading.UseReading,
                                slot.reading.UseResistivity, slot.reading.UsePhase};
    axes.include(slot.reading.curve, visibility, factor);
    add_curve(plot, slot.reading, slot.list_position, visibility, factor, error_bars_of(slot));
    for (PanePlot* const pane : {&plot.resistivity, &plot.phase}) {
      const bool by_mode = modes == Modes::both && slot.kind != StationSlotKind::neighbour;
      pane->series_styles.back() = by_mode ? mode_style_of(slot, data.key.data_type) : style_of(slot, k);
      if (rests_on_nothing(slot, data.key.data_type)) {
        dash(pane->series_styles.back(), slot, modes == Modes::both && !selected);
      }
      colour_neighbour(*pane, slot, data.slots.front());
    }
    ring_last_curve(plot, slot.reading);
  }
}

}  // namespace

GraphPair station_plot(bool fixed_scale, Modes modes) {
  GraphPair plot;
  AxisExtents axes;
  AxisExtents beside;
  const Module_averaged_data::StationDataSet& other = other_mode().station;
  const bool both = modes == Modes::both && !other.slots.empty();
  add_station(plot, axes, Module_averaged_data::data_sets().station, both ? Modes::both : Modes::selected);
  if (both) {
    add_station(plot, fixed_scale ? beside : axes, other, modes);
  }
  set_frequency_axes(plot, axes.extents().frequency);
  if (fixed_scale) {
    set_value_axes(plot, joined(line_extents(session().hide_masked_data), beside.extents()), {0.2, 0.05});
  } else {
    set_value_axes(plot, axes.extents(), {0.2, 0.1}, axes.shifted());
  }
  mark_points_beyond(plot);
  return plot;
}

std::string station_label(Modes modes) {
  const std::string label = with_short_site_name(
      "Merge/averages for " + format_number(session().current_station, "0"), session().current_station_index);
  const bool any = any_rests_on_nothing(Module_averaged_data::data_sets().station) ||
                   (modes == Modes::both && any_rests_on_nothing(other_mode().station));
  return any ? label + ", dashed: no reading in use" : label;
}

std::string station_series_label(std::size_t slot) {
  const StationSlot* const shown = shown_station_slot(slot);
  if (shown == nullptr) {
    return {};
  }
  return kind_label(*shown) + mode_ending(slot) +
         (rests_on_nothing(*shown, data_type_of(slot)) ? nothing_in_use : "");
}

}  // namespace Module_display_data
