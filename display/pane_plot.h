// pane_plot.h: one graph, ready to be drawn: curves, styles, axes.
//
// Series and points of a plot are in the order of the data set that it shows, so that a point that is clicked
// gives its place there. The points of a profile go along its axis (profile_order).
#pragma once
#include <vector>

#include "platform/graph/axis_limits.h"
#include "platform/graph/plot_table.h"
#include "reduction/data_sets/curve_parts.h"

namespace Module_display_data {

struct PanePlot {
  graph::PlotTable table;
  graph::PointStyles point_styles;
  std::vector<graph::SeriesStyle> series_styles;
  graph::AxisLimits x;
  graph::AxisLimits y;
  bool mark_points_beyond = false;  // points beyond the limits of y are marked at the edge
};

struct GraphPair {
  PanePlot resistivity;  // graph index 0
  PanePlot phase;        // graph index 1
  [[nodiscard]] bool empty() const { return resistivity.table.series.empty(); }
};

/// How far limits reach beyond the data: 0.05 for 5 percent.
struct Margins {
  double resistivity = 0.0;
  double phase = 0.0;
};

/// Which parts of a reading are shown.
struct Visibility {
  bool hide_masked = false;
  bool use_reading = true;
  bool use_resistivity = true;
  bool use_phase = true;
};

/// What decides the limits of the axes: curves that are used, and of these what isn't hidden. A reading that
/// was taken out is still drawn, in grey, but one of its outliers would flatten the curves that count.
class AxisExtents {
 public:
  void include(const Module_database::Curve& curve, const Visibility& visibility, double resistivity_factor);
  /// Along the axes; of all curves where none decides. Frequencies above 0 only.
  [[nodiscard]] Module_averaged_data::CurveExtents extents() const;
  /// Of the deciding resistivities with their factors.
  [[nodiscard]] const Module_averaged_data::Extent& shifted() const { return shifted_; }

 private:
  Module_averaged_data::CurveExtents deciding_;
  Module_averaged_data::CurveExtents all_;
  Module_averaged_data::Extent shifted_;
};

/// What reaches over both.
Module_averaged_data::CurveExtents joined(Module_averaged_data::CurveExtents one,
                                          const Module_averaged_data::CurveExtents& other);

enum class ErrorBars { none, shown };  // shown: what point_error knows of each point

/// Room for one more series of so many points in both panes, without data.
void add_series(GraphPair& plot, std::size_t points);

/// Adds a reading's curve as a series. A point shows if its frequency is listed and enabled in
/// session().frequencies and, while masked points are hidden, neither it nor its reading is switched off.
/// @param resistivity_factor multiplies resistivity and its error
void add_curve(GraphPair& plot, const Module_database::StoredReading& reading,
               const std::vector<std::int32_t>& list_position, const Visibility& visibility,
               double resistivity_factor, ErrorBars error_bars);

/// The frequency axes of both panes.
/// @param frequency Hz, above 0
void set_frequency_axes(GraphPair& plot, const Module_averaged_data::Extent& frequency);

/// The limits of resistivity on a logarithmic axis, and of phase on a linear one. Without data the limits
/// stay unset.
/// @param shifted  resistivities with their factors: where they lie beyond the limits, these are widened.
///                 Empty: the limits are those of `extents`
void set_value_axes(GraphPair& plot, const Module_averaged_data::CurveExtents& extents,
                    const Margins& margins, const Module_averaged_data::Extent& shifted = {});

/// Points beyond the limits of the value axes are marked at the edges.
void mark_points_beyond(GraphPair& plot);

}  // namespace Module_display_data
