#include "display/profile_plot.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <vector>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "display/chosen_points.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

using Module_averaged_data::Component;
using Module_averaged_data::CurveExtents;
using Module_averaged_data::Extent;
using Module_averaged_data::ProfileColumn;
using Module_averaged_data::ProfileDataSet;

namespace {

/// A column of the data set and its place on the axis.
struct PlacedColumn {
  const ProfileColumn* column = nullptr;
  std::optional<double> x;
};

std::vector<PlacedColumn> placed_columns(const LineAxis& axis, const ProfileDataSet& data) {
  std::vector<PlacedColumn> placed;
  for (const std::size_t index : profile_order(axis)) {
    placed.push_back({&data.columns[index], axis.x_of(data.columns[index].station)});
  }
  return placed;
}

/// The outermost places with half the mean spacing beside them; 1 m where all are at one place.
graph::AxisLimits limits_of(const std::vector<PlacedColumn>& columns) {
  graph::DataExtent extent;
  std::size_t count = 0;
  for (const PlacedColumn& column : columns) {
    if (column.x) {
      extent.include(*column.x);
      ++count;
    }
  }
  graph::AxisLimits limits;
  if (count > 0) {
    const double length = extent.maximum - extent.minimum;
    const double margin = length > 0.0 ? 0.5 * length / static_cast<double>(count - 1) : 1.0;
    limits.minimum = extent.minimum - margin;
    limits.maximum = extent.maximum + margin;
  }
  return limits;
}

void add_frequency(GraphPair& plot, const std::vector<PlacedColumn>& columns, std::size_t i) {
  const bool selected = session().frequencies.is_enabled(static_cast<std::int32_t>(i));
  const int used_style = graph::palette_style(static_cast<int>(i) + 1);
  const float frequency = Module_averaged_data::data_sets().profile.frequencies[i];
  add_series(plot, columns.size());
  for (std::size_t j = 0; j < columns.size(); ++j) {
    const ProfileColumn& column = *columns[j].column;
    const auto fill = [&](PanePlot& pane, float value, double factor, std::int32_t mask,
                          Component component) {
      pane.table.series[i].x[j] = columns[j].x.value_or(0.0);
      if (selected && columns[j].x && !is_absent(double{value})) {
        pane.table.series[i].y[j] = factor * double{value};
      }
      const int style = column.UseReading ? used_style : graph::unused_point;
      pane.point_styles[i][j] = mask == 1 ? style : graph::masked_point;
      pane.point_styles[i][j] += ring_of({column.ID, frequency, component});
    };
    fill(plot.resistivity, column.resistivity[i], double{column.ResOffset}, column.mask[i][0],
         Component::resistivity);
    fill(plot.phase, column.phase[i], 1.0, column.mask[i][1], Component::phase);
  }
}

/// About three digits: "152", "31.4", "0.52".
std::string short_text(double value) {
  constexpr double three_digits = 100.0;
  constexpr double two_digits = 10.0;
  const double size = std::abs(value);
  return format_number(value, size >= three_digits ? "0" : size >= two_digits ? "0.0" : "0.00");
}

/// Points of many stations are dots: discs would run into one another and hide the curves.
graph::SeriesStyle marker_style(std::size_t stations) {
  constexpr std::size_t many = 120;
  graph::SeriesStyle style;
  style.marker = stations > many ? graph::Marker::dot : graph::Marker::disc;
  return style;
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

std::vector<std::size_t> profile_order(const LineAxis& axis) {
  const std::vector<ProfileColumn>& columns = Module_averaged_data::data_sets().profile.columns;
  std::vector<std::size_t> order(columns.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t index) {
    return axis.x_of(columns[index].station).value_or(std::numeric_limits<double>::infinity());
  });
  return order;
}

std::string empty_profile_text() {
  const Module_averaged_data::ProfileDataSet& profile = Module_averaged_data::data_sets().profile;
  return profile.key.line.empty() || !profile.columns.empty()
             ? std::string()
             : "Line " + profile.key.line + " has no merged curves of " + profile.key.data_type +
                   " with this reference and dipole";
}

void emphasise(GraphPair& profile, std::size_t frequency_index) {
  constexpr double wide = 3.5;
  for (PanePlot* const pane : {&profile.resistivity, &profile.phase}) {
    if (frequency_index < pane->series_styles.size()) {
      pane->series_styles[frequency_index].width = wide;
      pane->series_styles[frequency_index].marker = graph::Marker::disc;
    }
  }
}

std::vector<graph::PlotLabel> profile_labels(const PanePlot& pane, std::optional<std::size_t> frequency_index,
                                             const std::function<std::string(float)>& name_of) {
  std::vector<graph::PlotLabel> labels;
  const auto& series = pane.table.series;
  if (frequency_index) {
    for (std::size_t j = 0; *frequency_index < series.size() && j < series[*frequency_index].y.size(); ++j) {
      const double value = series[*frequency_index].y[j];
      if (!is_absent(value)) {
        labels.push_back({series[*frequency_index].x[j], value, short_text(value)});
      }
    }
    return labels;
  }
  const std::vector<float>& frequencies = Module_averaged_data::data_sets().profile.frequencies;
  for (std::size_t i = std::min(series.size(), frequencies.size()); i-- > 0;) {
    for (std::size_t j = series[i].y.size(); j-- > 0;) {
      if (!is_absent(series[i].y[j])) {
        labels.push_back({series[i].x[j], series[i].y[j], name_of(frequencies[i])});
        break;
      }
    }
  }
  return labels;
}

GraphPair profile_plot(const LineAxis& axis) {
  const ProfileDataSet& data = Module_averaged_data::data_sets().profile;
  GraphPair plot;
  if (data.columns.empty()) {
    return plot;
  }
  const std::vector<PlacedColumn> columns = placed_columns(axis, data);
  for (std::size_t i = 0; i < data.frequencies.size(); ++i) {
    add_frequency(plot, columns, i);
  }
  for (PanePlot* const pane : {&plot.resistivity, &plot.phase}) {
    pane->series_styles.assign(data.frequencies.size(), marker_style(columns.size()));
  }
  plot.resistivity.x = limits_of(columns);
  plot.phase.x = plot.resistivity.x;
  set_value_axes(plot, line_extents(false), {0.2, 0.1}, shifted_resistivities(data));
  mark_points_beyond(plot);
  return plot;
}

}  // namespace Module_display_data
