// graph_content.h: everything that a chart draws, with the rules about which points show and in which colour.
//
// Indices are 0-based.
#pragma once
#include <QColor>
#include <optional>
#include <vector>

#include "platform/graph/axis_limits.h"
#include "platform/graph/plot_table.h"

namespace graph {

struct PointIndex {
  int series = 0;
  int point = 0;
  friend bool operator==(const PointIndex&, const PointIndex&) = default;
};

struct OverlayLine {
  double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;  // infinite: to the edge of the plot area
  Colour colour;
  double width = 1.0;
};

/// The colour of the points of a palette style, and of the curve with the number that the style is of.
QColor palette_style_colour(int style);

class GraphContent {
 public:
  void clear();
  void set_table(PlotTable table);
  void set_styles(PointStyles styles) { styles_ = std::move(styles); }
  void set_series_style(int series, const SeriesStyle& style);

  int series_count() const { return static_cast<int>(table_.series.size()); }
  int point_count(int series) const;
  const PlotSeries& series(int index) const { return table_.series[static_cast<std::size_t>(index)]; }
  SeriesStyle series_style(int series) const;
  int point_style(int series, int point) const;  // without its rings
  bool is_ringed(int series, int point) const { return (rings(series, point) & ringed) != 0; }
  bool is_chosen(int series, int point) const { return (rings(series, point) & chosen) != 0; }
  bool exists(PointIndex at) const;

  /// False for a point without data and for one that a logarithmic axis can't show.
  bool is_drawn(int series, int point, bool x_logarithmic, bool y_logarithmic) const;

  /// One standard deviation of the point; nothing if the table has none.
  std::optional<double> error(int series, int point) const;
  bool has_errors() const;

  QColor line_colour(int series) const;
  QColor point_colour(int series, int point) const;
  double marker_radius(int series) const;  // device-independent pixels

  /// Whether points beyond the limits of the y axis are marked at its ends.
  void mark_points_beyond(bool marked) { marks_points_beyond_ = marked; }
  bool marks_points_beyond() const { return marks_points_beyond_; }

  /// Width of the plot area, pixels: markers shrink where points would run into each other.
  void set_plot_width(double width) { plot_width_ = width; }

  /// The series from the bottom to the top of the drawing: wider ones above, otherwise in their order.
  std::vector<int> drawing_order() const;

  DataExtent x_extent() const;
  DataExtent y_extent() const;

 private:
  int rings(int series, int point) const;  // the sum of ringed and chosen
  bool is_null(double value) const;

  PlotTable table_;
  PointStyles styles_;
  std::vector<SeriesStyle> series_styles_;
  double plot_width_ = 1000.0;
  bool marks_points_beyond_ = false;
};

}  // namespace graph
