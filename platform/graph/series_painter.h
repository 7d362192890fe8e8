// series_painter.h: draws the curves of a chart: error bars, lines, and a marker for each point.
#pragma once
#include <qcustomplot.h>

#include "platform/graph/graph_content.h"
#include "platform/graph/point_search.h"

namespace graph {

/// Cuts a segment to its part inside a rectangle. @return false if it has none
bool clip_segment(const QRectF& area, QPointF& from, QPointF& to);

/// A used point: a filled disc or square. A masked one: a grey cross.
void draw_marker(QPainter& painter, QPointF at, const QColor& colour, double radius, bool masked,
                 Marker marker = Marker::disc);

/// A point beyond an end of the y axis: a small triangle that points there, hollow if the point is masked.
void draw_edge_marker(QPainter& painter, const MarkerPlace& place, const QColor& colour, double radius,
                      bool masked);

/// All curves as one element of the plot: QCPGraph knows one marker per curve, a mask needs one per point.
class SeriesPainter final : public QCPLayerable {
 public:
  SeriesPainter(QCustomPlot& plot, const GraphContent& content);

  void set_error_bars(bool shown) { error_bars_ = shown; }

 protected:
  QRect clipRect() const override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
  void draw(QCPPainter* painter) override;

 private:
  struct PlacedPoint {
    QPointF at;
    bool drawn = false;
  };

  void place_points(int series);
  void draw_error_bars(QCPPainter& painter, int series) const;
  void draw_line(QCPPainter& painter, int series) const;
  void draw_markers(QCPPainter& painter, int series) const;

  const GraphContent& content_;
  const QCPAxis& x_axis_;
  const QCPAxis& y_axis_;
  bool error_bars_ = true;
  std::vector<PlacedPoint> placed_;  // of the series being drawn; kept for its memory
};

}  // namespace graph
