#include "display/raw_plot.h"

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/chosen_points.h"
#include "display/plot_colours.h"
#include "display/profile_plot.h"
#include "display/site_names.h"
#include "display/station_plot.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

using Module_averaged_data::RepeatDataSet;
using Module_averaged_data::RepeatSlot;

namespace {

graph::SeriesStyle style_of(const RepeatDataSet& data, std::size_t k, Modes modes) {
  graph::SeriesStyle style;
  const bool average = k == 0 && data.repeat_count > 1;
  if (!data.slots[k].reading.UseReading) {
    style.colour = graph::unused_colour;
  } else if (modes == Modes::both) {
    style.colour = average ? mode_colour(data.key.data_type) : pale_mode_colour(data.key.data_type);
  } else if (k > 0) {
    style.colour = repeat_colour(static_cast<int>(k));
  } else if (average) {
    style.colour = black;
  }
  if (average && data.slots[k].reading.UseReading) {
    const bool selected = &data == &Module_averaged_data::data_sets().repeats;
    style.width = selected ? 3.0 : 2.0;
  }
  return style;
}

bool average_rests_on_nothing(const RepeatDataSet& data) {
  return !data.slots.empty() && data.slots.front().reading.ID != 0 &&
         is_unsupported_curve(data.key.data_type, data.key.station, data.key.scan_rate);
}

void add_repeats(GraphPair& plot, AxisExtents& axes, const RepeatDataSet& data, Modes modes) {
  constexpr double as_measured = 1.0;
  for (std::size_t k = 0; k < data.slots.size(); ++k) {
    const RepeatSlot& slot = data.slots[k];
    const Visibility visibility{session().hide_masked_data, slot.reading.UseReading,
                                slot.reading.UseResistivity, slot.reading.UsePhase};
    axes.include(slot.reading.curve, visibility, as_measured);
    add_curve(plot, slot.reading, slot.list_position, visibility, as_measured, ErrorBars::shown);
    ring_last_curve(plot, slot.reading);
    graph::SeriesStyle style = style_of(data, k, modes);
    style.dashed = k == 0 && average_rests_on_nothing(data);
    plot.resistivity.series_styles.back() = style;
    plot.phase.series_styles.back() = style;
  }
}

}  // namespace

GraphPair raw_plot(bool fixed_scale, Modes modes) {
  constexpr Margins margins{0.05, 0.05};
  GraphPair plot;
  AxisExtents axes;
  AxisExtents beside;
  const RepeatDataSet& other = other_mode().repeats;
  const bool both = modes == Modes::both && !other.slots.empty();
  add_repeats(plot, axes, Module_averaged_data::data_sets().repeats, both ? Modes::both : Modes::selected);
  if (both) {
    add_repeats(plot, fixed_scale ? beside : axes, other, modes);
  }
  set_frequency_axes(plot, axes.extents().frequency);
  set_value_axes(
      plot, fixed_scale ? joined(line_extents(session().hide_masked_data), beside.extents()) : axes.extents(),
      margins);
  mark_points_beyond(plot);
  return plot;
}

std::string raw_label() {
  return with_short_site_name("Average/raw for " + format_number(session().current_station, "0"),
                              session().current_station_index);
}

std::string raw_series_label(std::size_t slot) {
  const auto& data = Module_averaged_data::data_sets().repeats;
  const RepeatDataSet& other = other_mode().repeats;
  const bool own = slot < data.slots.size();
  const std::size_t number = own ? slot : slot - data.slots.size();
  const std::string mode = other.slots.empty() ? "" : ", " + (own ? data : other).key.data_type;
  return (number == 0 ? "Average" : "Repeat " + format_number(static_cast<std::int64_t>(number), "0")) +
         mode + (number == 0 && average_rests_on_nothing(own ? data : other) ? nothing_in_use : "");
}

}  // namespace Module_display_data
