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

using Module_averaged_data::RepeatSlot;

namespace {

bool average_rests_on_nothing() {
  const auto& data = Module_averaged_data::data_sets().repeats;
  return !data.slots.empty() && data.slots.front().reading.ID != 0 &&
         Module_averaged_data::is_unsupported(data.key.station, data.key.scan_rate);
}

}  // namespace

GraphPair raw_plot(bool fixed_scale) {
  constexpr Margins margins{0.05, 0.05};
  constexpr double as_measured = 1.0;
  const auto& data = Module_averaged_data::data_sets().repeats;
  GraphPair plot;
  AxisExtents axes;
  for (std::size_t k = 0; k < data.slots.size(); ++k) {
    const RepeatSlot& slot = data.slots[k];
    const Visibility visibility{session().hide_masked_data, slot.reading.UseReading,
                                slot.reading.UseResistivity, slot.reading.UsePhase};
    axes.include(slot.reading.curve, visibility, as_measured);
    add_curve(plot, slot.reading, slot.list_position, visibility, as_measured, ErrorBars::shown);
    ring_last_curve(plot, slot.reading);
    graph::SeriesStyle style;
    if (!slot.reading.UseReading) {
      style.colour = graph::unused_colour;
    } else if (k > 0) {
      style.colour = repeat_colour(static_cast<int>(k));
    } else if (data.repeat_count > 1) {
      style.colour = black;
      style.width = 3.0;
    }
    style.dashed = k == 0 && average_rests_on_nothing();
    plot.resistivity.series_styles.back() = style;
    plot.phase.series_styles.back() = style;
  }
  set_frequency_axes(plot, axes.extents().frequency);
  set_value_axes(plot, fixed_scale ? line_extents(session().hide_masked_data) : axes.extents(), margins);
  mark_points_beyond(plot);
  return plot;
}

std::string raw_label() {
  return with_short_site_name("Average/raw for " + format_number(session().current_station, "0"),
                              session().current_station_index);
}

std::string raw_series_label(std::size_t slot) {
  if (slot == 0) {
    return std::string("Average") + (average_rests_on_nothing() ? nothing_in_use : "");
  }
  return "Repeat " + format_number(static_cast<std::int64_t>(slot), "0");
}

}  // namespace Module_display_data
