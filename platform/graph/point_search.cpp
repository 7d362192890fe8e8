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

std::optional<PointIndex> nearest_point(const GraphContent& content, const QCPAxis& x, const QCPAxis& y,
                                        const QRectF& area, QPointF position, double radius) {
  std::optional<PointIndex> nearest;
  double min_squared = radius * radius;
  for (const int s : content.drawing_order()) {
    for (int p = 0; p < content.point_count(s); ++p) {
      const std::optional<QPointF> at = point_position(content, {s, p}, x, y);
      if (!at || !area.contains(*at)) {
        continue;
      }
      const QPointF offset = *at - position;
      const double squared = QPointF::dotProduct(offset, offset);
      if (squared <= min_squared) {
        min_squared = squared;
        nearest = PointIndex{s, p};
      }
    }
  }
  return nearest;
}

}  // namespace graph
