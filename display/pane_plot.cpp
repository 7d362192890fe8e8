#include "display/pane_plot.h"

#include <algorithm>

#include "core/absent_value.h"
#include "core/session_state.h"
#include "reduction/data_sets/point_error.h"

namespace Module_display_data {

using Module_averaged_data::CurveExtents;
using Module_averaged_data::Extent;
using Module_database::Curve;
using Module_database::field_phase;
using Module_database::field_resistivity;

namespace {

constexpr double start_without_frequencies = 0.001;  // Hz

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

void fill_error(PanePlot& pane, const Module_averaged_data::PointError& error, std::size_t point,
                double factor) {
  if (error.source == Module_averaged_data::ErrorSource::none) {
    return;
  }
  graph::PlotSeries& series = pane.table.series.back();
  series.error.resize(series.y.size(), graph::null_value);
  series.error[point] = plotted(error.value, factor);
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

void add_curve(GraphPair& plot, const Module_database::StoredReading& reading,
               const std::vector<std::int32_t>& list_position, const Visibility& visibility,
               double resistivity_factor, ErrorBars error_bars) {
  using Module_averaged_data::point_error;
  const Curve& curve = reading.curve;
  add_series(plot, curve.count());
  for (std::size_t point = 0; point < curve.count(); ++point) {
    const bool selected = session().frequencies.is_enabled(list_position[point]);
    fill_point(plot.resistivity, curve, field_resistivity, point,
               selected && shown(visibility, curve, field_resistivity, point), resistivity_factor);
    fill_point(plot.phase, curve, field_phase, point,
               selected && shown(visibility, curve, field_phase, point), 1.0);
    if (error_bars == ErrorBars::shown) {
      fill_error(plot.resistivity, point_error(reading, field_resistivity, point), point, resistivity_factor);
      fill_error(plot.phase, point_error(reading, field_phase, point), point, 1.0);
    }
  }
}

void AxisExtents::include(const Curve& curve, const Visibility& visibility, double resistivity_factor) {
  for (std::size_t point = 0; point < curve.count(); ++point) {
    const auto decides = [&](int field) {
      const bool hidden = visibility.hide_masked && is_absent(double{curve.value(field, point)});
      return visibility.use_reading && !hidden && shown(visibility, curve, field, point);
    };
    const float frequency = curve.frequencies[point];
    const float resistivity = curve.value(field_resistivity, point);
    const float phase = curve.value(field_phase, point);
    if (frequency > 0.0F) {
      all_.frequency.include(frequency);
      if (decides(field_resistivity) || decides(field_phase)) {
        deciding_.frequency.include(frequency);
      }
    }
    all_.resistivity.include(resistivity);
    all_.phase.include(phase);
    if (decides(field_resistivity)) {
      deciding_.resistivity.include(resistivity);
      shifted_.include(static_cast<float>(plotted(resistivity, resistivity_factor)));
    }
    if (decides(field_phase)) {
      deciding_.phase.include(phase);
    }
  }
}

CurveExtents AxisExtents::extents() const {
  const auto of = [](const Extent& deciding, const Extent& all) { return deciding.empty() ? all : deciding; };
  return {of(deciding_.frequency, all_.frequency), of(deciding_.resistivity, all_.resistivity),
          of(deciding_.phase, all_.phase)};
}

CurveExtents joined(CurveExtents one, const CurveExtents& other) {
  const auto widen = [](Extent& extent, const Extent& by) {
    extent.minimum = std::min(extent.minimum, by.minimum);
    extent.maximum = std::max(extent.maximum, by.maximum);
  };
  widen(one.frequency, other.frequency);
  widen(one.resistivity, other.resistivity);
  widen(one.phase, other.phase);
  return one;
}

void set_frequency_axes(GraphPair& plot, const Extent& frequency) {
  graph::AxisLimits limits;
  limits.type = graph::AxisType::logarithmic;
  limits.cutoff = start_without_frequencies;
  if (!frequency.empty()) {
    limits.minimum = 0.9 * double{frequency.minimum};
    limits.maximum = 1.1 * double{frequency.maximum} + 1.0;
  }
  plot.resistivity.x = limits;
  plot.phase.x = limits;
}

void set_value_axes(GraphPair& plot, const CurveExtents& extents, const Margins& margins,
                    const Extent& shifted) {
  graph::AxisLimits& limits = plot.resistivity.y;
  limits = resistivity_limits(extents.resistivity, margins.resistivity);
  if (!shifted.empty() && !extents.resistivity.empty()) {
    const graph::AxisLimits needed = resistivity_limits(shifted, margins.resistivity);
    limits.minimum = shifted.minimum < extents.resistivity.minimum ? std::min(limits.minimum, needed.minimum)
                                                                   : limits.minimum;
    limits.maximum = shifted.maximum > extents.resistivity.maximum ? std::max(limits.maximum, needed.maximum)
                                                                   : limits.maximum;
  }
  plot.phase.y = phase_limits(extents.phase, margins.phase);
}

void mark_points_beyond(GraphPair& plot) {
  plot.resistivity.mark_points_beyond = true;
  plot.phase.mark_points_beyond = true;
}

}  // namespace Module_display_data
