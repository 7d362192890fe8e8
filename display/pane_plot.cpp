#include "display/pane_plot.h"

#include <algorithm>

#include "core/absent_value.h"
#include "core/session_state.h"

namespace Module_display_data {

using Module_averaged_data::CurveExtents;
using Module_averaged_data::Extent;
using Module_database::Curve;
using Module_database::field_phase;
using Module_database::field_resistivity;

namespace {

constexpr double lowest_shown_frequency = 0.001;  // Hz

void add_series_to(PanePlot& pane, std::size_t points) {
  graph::PlotSeries& series = pane.table.series.emplace_back();
  series.x.assign(points, graph::null_value);
  series.y.assign(points, graph::null_value);
  pane.point_styles.emplace_back(points, graph::used_point);
  pane.series_styles.emplace_back();
}

double plotted(float value, double factor) {
  return is_absent(double{value}) ? graph::null_value : factor * double{value};
}

/// Whether resistivity (1) or phase (2) of a point is shown.
bool shown(const Visibility& visibility, const Curve& curve, int field, std::size_t point) {
  const bool component = field == field_resistivity ? visibility.use_resistivity : visibility.use_phase;
  return !visibility.hide_masked ||
         (visibility.use_reading && component && curve.counts_at(field, point) == 1);
}

void fill_error(PanePlot& pane, const Curve& curve, int field, std::size_t point, double factor) {
  const int deviation = field == field_resistivity ? Module_database::field_resistivity_deviation
                                                   : Module_database::field_phase_deviation;
  graph::PlotSeries& series = pane.table.series.back();
  series.error.resize(series.y.size(), graph::null_value);
  series.error[point] = plotted(curve.value(deviation, point), factor);
}

void fill_point(PanePlot& pane, const Curve& curve, int field, std::size_t point, bool is_shown,
                double factor) {
  graph::PlotSeries& series = pane.table.series.back();
  series.x[point] = double{curve.frequencies[point]};
  if (is_shown) {
    series.y[point] = plotted(curve.value(field, point), factor);
  }
  pane.point_styles.back()[point] =
      curve.counts_at(field, point) == 1 ? graph::used_point : graph::masked_point;
}

/// The extent of a pane's plotted values.
Extent extent_of(const PanePlot& pane) {
  Extent extent;
  for (const graph::PlotSeries& series : pane.table.series) {
    for (const double value : series.y) {
      extent.include(static_cast<float>(value));
    }
  }
  return extent;
}

graph::AxisLimits resistivity_limits(const Extent& extent, double margin) {
  graph::AxisLimits limits;
  limits.type = graph::AxisType::logarithmic;
  if (!extent.empty()) {
    limits.minimum = extent.minimum > 1.0F ? (1.0 - margin) * double{extent.minimum} : 0.0;
    limits.maximum = (1.0 + margin) * double{extent.maximum} + 1.0;
  }
  return limits;
}

graph::AxisLimits phase_limits(const Extent& extent, double margin) {
  graph::AxisLimits limits;
  if (!extent.empty()) {
    limits.minimum = double{extent.minimum} * (extent.minimum < 0.0F ? 1.0 + margin : 1.0 - margin) - 2.0;
    limits.maximum = double{extent.maximum} * (extent.maximum < 0.0F ? 1.0 - margin : 1.0 + margin) + 2.0;
  }
  return limits;
}

}  // namespace

void add_series(GraphPair& plot, std::size_t points) {
  add_series_to(plot.resistivity, points);
  add_series_to(plot.phase, points);
}

void add_curve(GraphPair& plot, const Curve& curve, const std::vector<std::int32_t>& list_position,
               const Visibility& visibility, double resistivity_factor, ErrorBars error_bars) {
  add_series(plot, curve.count());
  for (std::size_t point = 0; point < curve.count(); ++point) {
    const bool selected = session().frequencies.is_enabled(list_position[point]);
    fill_point(plot.resistivity, curve, field_resistivity, point,
               selected && shown(visibility, curve, field_resistivity, point), resistivity_factor);
    fill_point(plot.phase, curve, field_phase, point,
               selected && shown(visibility, curve, field_phase, point), 1.0);
    if (error_bars == ErrorBars::deviations) {
      fill_error(plot.resistivity, curve, field_resistivity, point, resistivity_factor);
      fill_error(plot.phase, curve, field_phase, point, 1.0);
    }
  }
}

bool has_deviations(const Module_database::StoredReading& reading) {
  return reading.ID != 0 && reading.FileID < 0;
}

void set_frequency_axes(GraphPair& plot, const Extent& frequency) {
  graph::AxisLimits limits;
  limits.type = graph::AxisType::logarithmic;
  limits.cutoff = lowest_shown_frequency;
  if (!frequency.empty()) {
    limits.minimum = 0.9 * double{frequency.minimum};
    limits.maximum = 1.1 * double{frequency.maximum} + 1.0;
  }
  plot.resistivity.x = limits;
  plot.phase.x = limits;
}

void set_value_axes(GraphPair& plot, const CurveExtents& extents, const Margins& margins) {
  graph::AxisLimits& limits = plot.resistivity.y;
  limits = resistivity_limits(extents.resistivity, margins.resistivity);
  if (const Extent drawn = extent_of(plot.resistivity); !drawn.empty() && !extents.resistivity.empty()) {
    const graph::AxisLimits needed = resistivity_limits(drawn, margins.resistivity);
    limits.minimum = drawn.minimum < extents.resistivity.minimum ? std::min(limits.minimum, needed.minimum)
                                                                 : limits.minimum;
    limits.maximum = drawn.maximum > extents.resistivity.maximum ? std::max(limits.maximum, needed.maximum)
                                                                 : limits.maximum;
  }
  plot.phase.y = phase_limits(extents.phase, margins.phase);
}

}  // namespace Module_display_data
