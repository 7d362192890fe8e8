#include "platform/graph/graph_marks.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/graph/point_search.h"
#include "platform/graph/series_painter.h"

namespace graph {
namespace {

/// Pixel of a coordinate; an infinite one, or one a logarithmic axis can't show, lies just outside the area.
double line_end(const QCPAxis& axis, double coordinate, double low_edge, double high_edge) {
  if (axis.rangeReversed()) {
    std::swap(low_edge, high_edge);
  }
  if (std::isinf(coordinate)) {
    return coordinate < 0.0 ? low_edge : high_edge;
  }
  if (axis.scaleType() == QCPAxis::stLogarithmic && coordinate <= 0.0) {
    return low_edge;
  }
  return axis.coordToPixel(coordinate);
}

}  // namespace

OverlayLines::OverlayLines(QCustomPlot& plot, const QString& layer) : QCPLayerable(&plot, layer) {}

QRect OverlayLines::clipRect() const { return mParentPlot->axisRect()->rect(); }

void OverlayLines::applyDefaultAntialiasingHint(QCPPainter* painter) const { painter->setAntialiasing(true); }

void OverlayLines::draw(QCPPainter* painter) {
  const QCPAxis& x = *mParentPlot->xAxis;
  const QCPAxis& y = *mParentPlot->yAxis;
  const QRectF area = QRectF(clipRect()).adjusted(-5.0, -5.0, 5.0, 5.0);
  for (const OverlayLine& line : lines_) {
    QPointF from(line_end(x, line.x1, area.left(), area.right()),
                 line_end(y, line.y1, area.bottom(), area.top()));
    QPointF to(line_end(x, line.x2, area.left(), area.right()),
               line_end(y, line.y2, area.bottom(), area.top()));
    if (clip_segment(area, from, to)) {
      painter->setPen(QPen(QColor(line.colour.red, line.colour.green, line.colour.blue), line.width));
      painter->drawLine(QLineF(from, to));
    }
  }
  draw_labels(*painter);
}

void OverlayLines::draw_labels(QCPPainter& painter) const {
  constexpr double above = 5.0;  // pixels
  constexpr QColor backing(255, 255, 255, 200);
  const QCPAxis& x = *mParentPlot->xAxis;
  const QCPAxis& y = *mParentPlot->yAxis;
  const QRectF area(clipRect());
  painter.setFont(x.tickLabelFont());
  const QFontMetricsF metrics(painter.font());
  std::vector<QRectF> taken;
  for (const PlotLabel& label : labels_) {
    const QPointF at(x.coordToPixel(label.x), y.coordToPixel(label.y));
    if (!area.contains(at)) {
      continue;
    }
    const QString text = QString::fromStdString(label.text);
    const QSizeF size(metrics.horizontalAdvance(text), metrics.height());
    QRectF room(QPointF(at.x() - size.width() / 2.0, at.y() - above - size.height()), size);
    room.moveLeft(std::clamp(room.left(), area.left(), std::max(area.right() - size.width(), area.left())));
    room.moveTop(std::max(room.top(), area.top()));
    if (std::ranges::none_of(taken, [&](const QRectF& other) { return other.intersects(room); })) {
      painter.fillRect(room, backing);
      painter.setPen(QColor(Qt::black));
      painter.drawText(room, Qt::AlignCenter | Qt::TextDontClip, text);
      taken.push_back(room);
    }
  }
}

PointerMarks::PointerMarks(QCustomPlot& plot, const QString& layer, const GraphContent& content)
    : QCPLayerable(&plot, layer), content_(content) {}

QRect PointerMarks::clipRect() const { return mParentPlot->axisRect()->rect().adjusted(-8, -8, 8, 8); }

void PointerMarks::applyDefaultAntialiasingHint(QCPPainter* painter) const { painter->setAntialiasing(true); }

void PointerMarks::draw(QCPPainter* painter) {
  if (painter->modes().testFlag(QCPPainter::pmNoCaching)) {
    return;  // an exported chart shows data, not where the pointer stood
  }
  if (point_ && content_.exists(*point_)) {
    const std::optional<QPointF> position =
        point_position(content_, *point_, *mParentPlot->xAxis, *mParentPlot->yAxis);
    if (position) {
      const MarkerPlace place = marker_place(content_, *position, *mParentPlot->yAxis);
      const bool masked = content_.point_style(point_->series, point_->point) == masked_point;
      const QColor colour = content_.point_colour(point_->series, point_->point);
      const double radius = content_.marker_radius(point_->series) + 2.0;
      const QColor marked = masked ? colour.darker(140) : colour;
      draw_marker(*painter, place.at, Qt::white, radius + 1.5, false);
      if (place.beyond == Beyond::neither) {
        draw_marker(*painter, place.at, marked, radius, masked, content_.series_style(point_->series).marker);
      } else {
        draw_edge_marker(*painter, place, marked, radius - 1.5, masked);
      }
      painter->setBrush(Qt::NoBrush);
      painter->setPen(QPen(QColor(60, 60, 60), 1.0));
      painter->drawEllipse(place.at, radius + 1.5, radius + 1.5);
    }
  }
  if (band_) {
    painter->setAntialiasing(false);
    painter->setPen(QPen(QColor(60, 110, 190), 1.0));
    painter->setBrush(QColor(60, 110, 190, 40));
    painter->drawRect(*band_);
  }
}

}  // namespace graph
