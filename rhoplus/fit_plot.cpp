#include "rhoplus/fit_plot.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "display/chosen_points.h"
#include "display/plot_colours.h"
#include "reduction/data_sets/curve_parts.h"

namespace Module_rhoplus {

using Module_averaged_data::Component;
using Module_averaged_data::Extent;
using Module_database::Curve;
using Module_display_data::GraphPair;
using Module_display_data::PanePlot;
using numerics::rhoplus::RhoplusLayer;
using numerics::rhoplus::RhoplusRow;

namespace {

constexpr graph::Colour resistivity_colour{0, 0, 255};
constexpr graph::Colour phase_colour{255, 0, 0};
constexpr graph::Colour sheet_colour{0, 90, 160};
constexpr graph::Colour basement_colour{200, 60, 0};
constexpr double stem_width = 3.0;
constexpr double side_room = 1.5;  // factor on the depths at the sides

void fill_observed(PanePlot& pane, const StationInversion& inversion, const Frequencies& frequencies,
                   int field) {
  const Curve& curve = inversion.merged.curve;
  const bool is_phase = field == Module_database::field_phase;
  graph::PlotSeries& series = pane.table.series[series_observed];
  series.error.assign(curve.count(), graph::null_value);
  for (std::size_t i = 0; i < curve.count(); ++i) {
    if (frequencies.enabled_position(curve.frequencies[i]) < 0) {
      continue;
    }
    series.x[i] = double{curve.frequencies[i]};
    const bool masked = curve.counts_at(field, i) != 1;
    if (curve.is_present(field, i) && curve.frequencies[i] > 0.0F &&
        !(masked && session().hide_masked_data)) {
      series.y[i] = double{(is_phase ? 1.0F : inversion.scale) * curve.value(field, i)};
    }
    if (masked) {
      pane.point_styles[series_observed][i] = graph::masked_point;
    }
    const auto& row_number = inversion.tables.index.row_number;
    if (i < row_number.size() && row_number[i] > 0) {
      const RhoplusRow& row = inversion.tables.data[static_cast<std::size_t>(row_number[i] - 1)];
      if (is_phase ? row.uses_phase() : row.uses_resistivity()) {
        series.error[i] = double{is_phase ? row.phase_error : row.resistivity_error};
      }
    }
  }
}

void fill_model(PanePlot& pane, const Module_output::RhoplusData& data, bool is_phase) {
  graph::PlotSeries& series = pane.table.series[series_model];
  for (std::size_t i = 0; i < data.size(); ++i) {
    series.x[i] = double{data[i].frequency};
    series.y[i] = double{is_phase ? data[i].model_phase : data[i].model_resistivity};
  }
}

/// Of what is inverted: a masked outlier must not press the curve flat. Where all is masked, of all.
Extent extent_of_observed(const PanePlot& pane) {
  const std::vector<double>& values = pane.table.series[series_observed].y;
  Extent used;
  Extent all;
  for (std::size_t i = 0; i < values.size(); ++i) {
    all.include(static_cast<float>(values[i]));
    if (pane.point_styles[series_observed][i] != graph::masked_point) {
      used.include(static_cast<float>(values[i]));
    }
  }
  return used.empty() ? all : used;
}

Extent positive_extent_of(const std::vector<double>& values) {
  Extent extent;
  for (const double value : values) {
    if (value > 0.0) {
      extent.include(static_cast<float>(value));
    }
  }
  return extent;
}

void set_axes(GraphPair& plot) {
  Module_averaged_data::CurveExtents extents;
  extents.resistivity = extent_of_observed(plot.resistivity);
  extents.phase = extent_of_observed(plot.phase);
  Module_display_data::set_frequency_axes(plot,
                                          positive_extent_of(plot.phase.table.series[series_observed].x));
  Module_display_data::set_value_axes(plot, extents, {0.2, 0.1});
  Module_display_data::mark_points_beyond(plot);
}

/// The decades that hold all values above 0. Without any, 1 to 10.
graph::AxisLimits decades_around(const std::vector<double>& values) {
  graph::AxisLimits limits;
  limits.type = graph::AxisType::logarithmic;
  double min_value = std::numeric_limits<double>::infinity();
  double max_value = 0.0;
  for (const double value : values) {
    min_value = value > 0.0 ? std::min(min_value, value) : min_value;
    max_value = std::max(max_value, value);
  }
  if (max_value == 0.0) {
    min_value = max_value = 1.0;
  }
  limits.minimum = std::pow(10.0, std::ceil(std::log10(min_value)) - 1.0);
  limits.maximum = std::pow(10.0, std::floor(std::log10(max_value)) + 1.0);
  return limits;
}

bool is_basement(const RhoplusLayer& layer) {
  return layer.conductance >= numerics::rhoplus::perfect_conductor;
}

}  // namespace

GraphPair fit_plot(const StationInversion& inversion, const Frequencies& frequencies) {
  GraphPair plot;
  if (inversion.merged.ID == 0) {
    return plot;
  }
  Module_display_data::add_series(plot, inversion.merged.curve.count());
  Module_display_data::add_series(plot, inversion.tables.data.size());
  fill_observed(plot.resistivity, inversion, frequencies, Module_database::field_resistivity);
  fill_observed(plot.phase, inversion, frequencies, Module_database::field_phase);
  fill_model(plot.resistivity, inversion.tables.data, false);
  fill_model(plot.phase, inversion.tables.data, true);
  // Wide series are drawn on top: the model must not hide the data.
  plot.resistivity.series_styles[series_observed] = {resistivity_colour, 3.0, false};
  plot.phase.series_styles[series_observed] = {phase_colour, 3.0, false};
  for (PanePlot* const pane : {&plot.resistivity, &plot.phase}) {
    pane->series_styles[series_model] = {Module_display_data::black, 1.5, true};
  }
  set_axes(plot);  // by the styles without rings
  for (std::size_t i = 0; i < inversion.merged.curve.count(); ++i) {
    const auto ring = [&](PanePlot& pane, Component component) {
      pane.point_styles[series_observed][i] += Module_display_data::ring_of(
          {inversion.merged.ID, inversion.merged.curve.frequencies[i], component});
    };
    ring(plot.resistivity, Component::resistivity);
    ring(plot.phase, Component::phase);
  }
  return plot;
}

std::vector<LegendItem> fit_legend() {
  return {{"\u25cf", resistivity_colour, "resistivity observed"},
          {"\u25cf", phase_colour, "phase observed"},
          {"\u2501", Module_display_data::black, "response of the model"}};
}

std::vector<LegendItem> sheet_legend() {
  return {{"\u2503", sheet_colour, "sheet of this conductance"},
          {"\u2503", basement_colour, "perfect conductor"}};
}

std::string fit_point_text(const GraphPair& plot, std::size_t series, std::size_t point,
                           Component component) {
  const bool is_phase = component == Component::phase;
  const PanePlot& pane = is_phase ? plot.phase : plot.resistivity;
  const auto& all = pane.table.series;
  if (series >= all.size() || point >= all[series].y.size()) {
    return {};
  }
  const char* const unit = is_phase ? " degrees" : " ohm-m";
  const auto& of = all[series];
  std::string text = std::string(series == series_observed ? "Observed: " : "Model: ") +
                     format_number(of.x[point], "0.0000") + " Hz, " + format_number(of.y[point], "0.00") +
                     unit;
  if (point < of.error.size() && !is_absent(of.error[point])) {
    text += " \u00b1 " + format_number(of.error[point], "0.00");
  }
  const int rings = graph::ringed | graph::chosen;
  if (series == series_observed && (pane.point_styles[series][point] & ~rings) == graph::masked_point) {
    text += ", masked";
  }
  return text;
}

PanePlot sheet_plot(const std::vector<RhoplusLayer>& model) {
  PanePlot plot;
  std::vector<double> depths;
  std::vector<double> conductances;
  for (const RhoplusLayer& layer : model) {
    depths.push_back(double{layer.depth});
    if (!is_basement(layer)) {
      conductances.push_back(double{layer.conductance});
    }
  }
  if (model.empty()) {
    return plot;
  }
  plot.x = decades_around(depths);
  plot.y = decades_around(conductances);
  const double surface_place = plot.x.minimum;
  plot.x.minimum /= side_room;
  plot.x.maximum *= side_room;
  const double below_edge = plot.y.minimum / 10.0;  // so that the foot of a stem has no dot
  for (const RhoplusLayer& layer : model) {
    const double depth = std::max(double{layer.depth}, surface_place);
    const double top = is_basement(layer) ? plot.y.maximum : double{layer.conductance};
    plot.table.series.push_back({{depth, depth}, {below_edge, top}, {}});
    plot.point_styles.push_back({graph::used_point, graph::used_point});
    plot.series_styles.push_back({is_basement(layer) ? basement_colour : sheet_colour, stem_width, true});
  }
  return plot;
}

std::string sheet_text(const std::vector<RhoplusLayer>& model, std::size_t sheet) {
  if (sheet >= model.size()) {
    return {};
  }
  const RhoplusLayer& layer = model[sheet];
  const std::string depth = format_number(layer.depth, "0.0") + " m";
  if (is_basement(layer)) {
    return "Perfect conductor: " + depth;
  }
  return "Sheet " + plain_text(static_cast<int>(sheet) + 1) + " of " +
         plain_text(static_cast<int>(model.size())) + ": " + depth + ", " + plain_text(layer.conductance) +
         " S";
}

}  // namespace Module_rhoplus
