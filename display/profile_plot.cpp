#include "display/profile_plot.h"

#include "core/absent_value.h"
#include "core/session_state.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

using Module_averaged_data::CurveExtents;
using Module_averaged_data::Extent;
using Module_averaged_data::ProfileColumn;
using Module_averaged_data::ProfileDataSet;

namespace {

void add_frequency(GraphPair& plot, const ProfileDataSet& data, std::size_t i) {
  const bool selected = session().frequencies.is_enabled(static_cast<std::int32_t>(i));
  const int used_style = graph::palette_style(static_cast<int>(i) + 1);
  add_series(plot, data.columns.size());
  for (std::size_t j = 0; j < data.columns.size(); ++j) {
    const ProfileColumn& column = data.columns[j];
    const auto fill = [&](PanePlot& pane, float value, double factor, std::int32_t mask) {
      pane.table.series[i].x[j] = column.station;
      if (selected && !is_absent(double{value})) {
        pane.table.series[i].y[j] = factor * double{value};
      }
      const int style = column.UseReading ? used_style : graph::unused_point;
      pane.point_styles[i][j] = mask == 1 ? style : graph::masked_point;
    };
    fill(plot.resistivity, column.resistivity[i], double{column.ResOffset}, column.mask[i][0]);
    fill(plot.phase, column.phase[i], 1.0, column.mask[i][1]);
  }
}

/// What a column adds to the extents, with a factor on its resistivities.
void include(const ProfileColumn& column, bool hide_masked, float factor, CurveExtents& extents) {
  for (std::size_t i = 0; i < column.resistivity.size(); ++i) {
    if (!is_absent(double{column.resistivity[i]}) &&
        (!hide_masked || (column.UseResistivity && column.mask[i][0] == 1))) {
      extents.resistivity.include(factor * column.resistivity[i]);
    }
    if (!hide_masked || (column.UsePhase && column.mask[i][1] == 1)) {
      extents.phase.include(column.phase[i]);
    }
  }
}

Extent shifted_resistivities(const ProfileDataSet& data) {
  CurveExtents shifted;
  for (const ProfileColumn& column : data.columns) {
    if (column.UseReading) {
      include(column, false, column.ResOffset, shifted);
    }
  }
  return shifted.resistivity;
}

}  // namespace

CurveExtents line_extents(bool hide_masked) {
  const ProfileDataSet& data = Module_averaged_data::data_sets().profile;
  CurveExtents extents;
  for (const ProfileColumn& column : data.columns) {
    if (column.UseReading) {
      include(column, hide_masked, 1.0F, extents);
    }
  }
  if (extents.resistivity.empty()) {
    extents.resistivity = data.extents.resistivity;
  }
  if (extents.phase.empty()) {
    extents.phase = data.extents.phase;
  }
  return extents;
}

GraphPair profile_plot() {
  const ProfileDataSet& data = Module_averaged_data::data_sets().profile;
  GraphPair plot;
  if (data.columns.empty()) {
    return plot;
  }
  for (std::size_t i = 0; i < data.frequencies.size(); ++i) {
    add_frequency(plot, data, i);
  }
  const double margin = half_spacing(data);
  plot.resistivity.x.minimum = data.columns.front().station - margin;
  plot.resistivity.x.maximum = data.columns.back().station + margin;
  plot.phase.x = plot.resistivity.x;
  set_value_axes(plot, line_extents(false), {0.2, 0.1}, shifted_resistivities(data));
  mark_points_beyond(plot);
  return plot;
}

}  // namespace Module_display_data
