#include "platform/graph/point_search.h"

#include <qcustomplot.h>

namespace graph {

std::optional<QPointF> point_position(const GraphContent& content, PointIndex at, const QCPAxis& x,
                                      const QCPAxis& y) {
  if (!content.is_drawn(at.series, at.point, x.scaleType() == QCPAxis::stLogarithmic,
                        y.scaleType() == QCPAxis::stLogarithmic)) {
    return std::nullopt;
  }
  const PlotSeries& series = content.series(at.series);
  const auto p = static_cast<std::size_t>(at.point);
  return QPointF(x.coordToPixel(series.x[p]), y.coordToPixel(series.y[p]));
}

MarkerPlace marker_place(const GraphContent& content, QPointF position, const QCPAxis& y) {
  constexpr double inset = 5.0;  // pixels, so that the whole marker is seen
  const QRectF area = y.axisRect()->rect();
  if (!content.marks_points_beyond() || (position.y() >= area.top() && position.y() <= area.bottom())) {
    return {position, Beyond::neither};
  }
  return position.y() < area.top() ? MarkerPlace{QPointF(position.x(), area.top() + inset), Beyond::upper}
                                   : MarkerPlace{QPointF(position.x(), area.bottom() - inset), Beyond::lower};
}

std::optional<PointIndex> nearest_point(const GraphContent& content, const QCPAxis& x, const QCPAxis& y,
                                        const QRectF& area, QPointF position, double radius) {
  std::optional<PointIndex> nearest;
  double min_squared = radius * radius;
  for (const int s : content.drawing_order()) {
    for (int p = 0; p < content.point_count(s); ++p) {
      const std::optional<QPointF> point = point_position(content, {s, p}, x, y);
      if (!point) {
        continue;
      }
      const QPointF at = marker_place(content, *point, y).at;
      if (!area.contains(at)) {
        continue;
      }
      const QPointF offset = at - position;
      const double squared = QPointF::dotProduct(offset, offset);
      if (squared <= min_squared) {
        min_squared = squared;
        nearest = PointIndex{s, p};
      }
    }
  }
  return nearest;
}

std::vector<PointIndex> points_inside(const GraphContent& content, const QCPAxis& x, const QCPAxis& y,
                                      const QRectF& area) {
  std::vector<PointIndex> inside;
  for (int s = 0; s < content.series_count(); ++s) {
    for (int p = 0; p < content.point_count(s); ++p) {
      const std::optional<QPointF> point = point_position(content, {s, p}, x, y);
      if (point && area.contains(marker_place(content, *point, y).at)) {
        inside.push_back({s, p});
      }
    }
  }
  return inside;
}

}  // namespace graph
