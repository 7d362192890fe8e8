// VexGraphControl.h: the chart of the main view, the inversion windows and the results viewer.
//
// Conventions of this file: series and points are counted from 0; coordinates are data coordinates unless
// they are called pixels.
//
// With the mouse: a click on a point selects it at once; a drag zooms to its rectangle (a thin one along its
// length only) and never selects; the wheel zooms about the pointer, over an axis along that axis only; the
// middle button drags the plot; Shift and a drag mark the points in the rectangle, in charts whose points can
// be; a double click resets the zoom. Its first press is a click, its second one
// never selects: where points lie close together a user who wants to see everything again hits one of them.
#pragma once
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/graph/axis_limits.h"
#include "platform/graph/axis_view.h"
#include "platform/graph/graph_content.h"
#include "platform/graph/plot_table.h"

class QCPItemText;
class QCPPainter;
class QCustomPlot;
class QMenu;

namespace graph {
class MouseGestures;
class OverlayLines;
class PointerMarks;
class SeriesPainter;
}  // namespace graph

class VexGraphControl final : public QWidget {
  Q_OBJECT

 public:
  using PointText = std::function<QString(int series, int point)>;

  explicit VexGraphControl(QWidget* parent = nullptr);
  ~VexGraphControl() override;

  /// Removes data, point styles and series styles. Overlay lines stay and show again with the next data.
  void clear_graph();
  void set_graph_data(graph::PlotTable values);
  void set_graph_styles(graph::PointStyles styles);
  void set_series_style(int series, const graph::SeriesStyle& style);

  /// Draws what was set, once; the setters don't draw.
  void draw_graph();
  /// Drawings of the whole chart, whatever the cause; for tests and measurements.
  int draw_count() const { return draw_count_; }

  /// Removes overlay lines and labels. Lines lie over the curves; they are seen from the next draw_graph or
  /// draw_overlay.
  void begin_overlay();
  /// Draws lines and labels of the overlay alone, over the curves as draw_graph has left them.
  void draw_overlay();
  /// An end at or beyond the limit of its axis goes to the edge of the plot area, also when the view changes
  /// later.
  void draw_overlay_line(double x1, double y1, double x2, double y2, graph::Colour colour,
                         double width = 1.0);
  /// A text above a place; one that would cover an earlier one isn't drawn.
  void draw_overlay_label(graph::PlotLabel label);

  // Limits of the unzoomed axes as they were set; graph::unset_limit leaves one to the data. See
  // graph::resolve_range.
  void set_xaxismin(float limit) { x_limits_.minimum = limit; }
  void set_xaxismax(float limit) { x_limits_.maximum = limit; }
  void set_yaxismin(float limit) { y_limits_.minimum = limit; }
  void set_yaxismax(float limit) { y_limits_.maximum = limit; }
  float xaxismin() const { return static_cast<float>(x_limits_.minimum); }
  float xaxismax() const { return static_cast<float>(x_limits_.maximum); }
  float yaxismin() const { return static_cast<float>(y_limits_.minimum); }
  float yaxismax() const { return static_cast<float>(y_limits_.maximum); }
  void set_xaxistype(graph::AxisType type) { x_limits_.type = type; }
  void set_yaxistype(graph::AxisType type) { y_limits_.type = type; }
  /// Where the logarithmic x axis starts with neither a limit nor data above 0.
  void set_xaxiscutoff(float cutoff) { x_limits_.cutoff = static_cast<double>(cutoff); }
  /// Points beyond the limits of the unzoomed y axis are marked by small triangles at its ends, which take
  /// clicks as the points do.
  void set_points_beyond_marked(bool marked) { points_beyond_marked_ = marked; }

  /// "Frequency (Hz)"; a title longer than its axis loses words from the front.
  void set_x_title(const QString& title);
  void set_y_title(const QString& title);
  /// x is frequency, Hz: title and labels follow graph::FrequencyAxis.
  void set_x_frequency();
  /// What the x axis says at a coordinate: a period where those are shown.
  double shown_x(double x) const;
  /// The upper of two charts with a common x axis leaves its labels to the lower one.
  void set_x_labels_shown(bool shown);
  void set_error_bars_shown(bool shown);
  bool error_bars_shown() const { return error_bars_shown_; }
  /// Whether Shift and a drag report the points of a rectangle; otherwise they zoom like any drag.
  void set_marking(bool marking) { marking_ = marking; }
  /// Text of the tool tip at a point; the default gives its coordinates.
  void set_point_text(PointText text) { point_text_ = std::move(text); }

  /// Back to the limits, seen from the next draw_graph. Data alone never end a zoom: call this where the
  /// station changes.
  void reset_zoom();
  bool zoomed() const { return x_view_.zoomed() || y_view_.zoomed(); }
  /// What is in view, to be shown again later, and from the next draw_graph.
  struct View {
    graph::AxisView x;
    graph::AxisView y;
  };
  View view() const { return {x_view_, y_view_}; }
  void set_view(const View& view);
  /// The ranges on show; for tests.
  graph::AxisRange x_range() const { return x_view_.shown(); }
  graph::AxisRange y_range() const { return y_view_.shown(); }
  /// Both charts follow each other's zoom along x.
  void share_x_zoom(VexGraphControl& other);

  /// Place of a point's marker in the widget as last drawn, pixels; nothing if the point isn't drawn.
  std::optional<QPointF> point_position(int series, int point) const;
  QRect plot_area() const;
  /// The part of the widget's height that labels and edges take.
  int frame_height() const;

  /// The chart as drawn, at `scale` pixels for each of width and height. @return 0, or -1 after a
  /// message
  [[nodiscard]] int save_png(const std::string& path, int width, int height, double scale = 1.0);
  [[nodiscard]] int save_pdf(const std::string& path);

  /// Draws the chart on a painter's page from its origin, laid out for a size. For a chart that is not on
  /// screen: it keeps that size.
  void draw_on(QCPPainter& painter, QSize size);

  /// The menu of the right mouse button; the caller owns it.
  std::unique_ptr<QMenu> make_context_menu();

  QSize sizeHint() const override { return {360, 220}; }
  /// Low enough for two pairs above each other in a low window; labels below the axis need their room.
  QSize minimumSizeHint() const override { return {160, x_labels_shown_ ? 84 : 56}; }

 Q_SIGNALS:
  void point_selected(int series, int point);
  void points_enclosed(const std::vector<graph::PointIndex>& points);  // may be none
  /// x and y as the axes are labelled: a period where those are shown. Both are 0 off the graph.
  void pointer_moved(bool off_graph, double x, double y);
  void x_view_changed(bool zoomed, double lower, double upper);
  void error_bars_toggled(bool shown);

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void connect_gestures();
  void select_at(QPointF at);
  void hover_at(QPointF at);
  void leave();
  void show_band(QPointF from, QPointF to);
  void zoom_to_band(QPointF from, QPointF to);
  [[nodiscard]] bool band_marks() const;
  void report_band(QPointF from, QPointF to);
  void show_everything();
  void pan(QPointF from, QPointF to);
  void turn_wheel(QPointF at, double notches);
  void follow_frequency_axis();
  void follow_x_view(bool zoomed, double lower, double upper);
  void view_changed();
  void set_zoom_home();
  void apply_view();
  void apply_layout();
  std::optional<graph::PointIndex> point_at(QPointF at) const;
  QString point_text(graph::PointIndex at) const;

  graph::GraphContent content_;
  graph::AxisLimits x_limits_;
  graph::AxisLimits y_limits_;
  graph::AxisView x_view_;
  graph::AxisView y_view_;
  QString x_title_;
  QString y_title_;
  PointText point_text_;
  std::optional<QPointF> pointer_;  // pixels; none while it is elsewhere
  QCustomPlot* plot_ = nullptr;
  QCPItemText* y_title_item_ = nullptr;
  graph::MouseGestures* gestures_ = nullptr;
  graph::SeriesPainter* series_painter_ = nullptr;
  graph::OverlayLines* overlay_ = nullptr;
  graph::PointerMarks* pointer_marks_ = nullptr;
  int draw_count_ = 0;
  bool x_is_frequency_ = false;
  bool x_labels_shown_ = true;
  bool error_bars_shown_ = true;
  bool points_beyond_marked_ = false;
  bool marking_ = false;
};
