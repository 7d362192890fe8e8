#include "tensor/windows/glyph_painter.h"

#include <QPolygonF>
#include <algorithm>

namespace Module_tensor {

namespace {

QPointF placed(QPointF origin, GlyphPoint point, double scale = 1.0) {
  return {origin.x() + scale * point[0], origin.y() - scale * point[1]};
}

}  // namespace

void paint_ellipse(QPainter& painter, std::span<const GlyphPoint> outline, QPointF centre, double radius,
                   const QBrush& fill) {
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(outline.size()));
  for (const GlyphPoint& point : outline) {
    polygon.append(placed(centre, point, radius));
  }
  painter.setBrush(fill);
  painter.drawPolygon(polygon);
}

void paint_arrow(QPainter& painter, QPointF from, GlyphPoint tip, const QColor& colour, Qt::PenStyle shaft) {
  const double width = std::max(1.0, painter.pen().widthF());
  const auto shape = arrow_shape(tip, 6.0 * width);
  if (!shape) {
    return;
  }
  const QPen pen = painter.pen();
  painter.setPen(QPen(colour, width, shaft, Qt::FlatCap));
  painter.drawLine(from, placed(from, shape->shaft_end));
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(
      QPolygonF({placed(from, shape->head[0]), placed(from, shape->head[1]), placed(from, shape->head[2])}));
  painter.setPen(pen);
}

}  // namespace Module_tensor
