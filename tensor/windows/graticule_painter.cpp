#include "tensor/windows/graticule_painter.h"

#include <QFontMetricsF>
#include <QPolygonF>
#include <algorithm>
#include <optional>

namespace Module_tensor {

using Module_projections::GraticuleLine;

namespace {

constexpr QColor line_colour(200, 215, 230);
constexpr QColor label_colour(80, 115, 150);

/// Where a line from south to north crosses the upper edge of a plot, or one from west to east the left one.
std::optional<QPointF> crossing(const QPolygonF& line, const QRectF& plot, bool meridian) {
  for (qsizetype i = 1; i < line.size(); ++i) {
    const QPointF from = line[i - 1];
    const QPointF to = line[i];
    const double a = meridian ? from.y() - plot.top() : plot.left() - from.x();
    const double b = meridian ? to.y() - plot.top() : plot.left() - to.x();
    if (a >= 0.0 && b < 0.0) {
      const QPointF at = from + (to - from) * (a / (a - b));
      return plot.adjusted(-1.0, -1.0, 1.0, 1.0).contains(at) ? std::optional(at) : std::nullopt;
    }
  }
  return std::nullopt;
}

QRectF label_room(const QSizeF& text, QPointF at, const QRectF& plot, bool meridian) {
  constexpr double gap = 2.0;
  return meridian ? QRectF(QPointF(at.x() - text.width() / 2.0, plot.top() + gap), text)
                  : QRectF(QPointF(plot.left() + gap, at.y() - text.height() / 2.0), text);
}

/// Where a plan has its arrow to the north and its scale.
std::vector<QRectF> reserved_rooms(const QRectF& plot) {
  constexpr QSizeF arrow(34.0, 70.0);
  const QSizeF scale(0.3 * plot.width(), 36.0);
  return {QRectF(QPointF(plot.right() - arrow.width(), plot.top()), arrow),
          QRectF(QPointF(plot.left(), plot.bottom() - scale.height()), scale)};
}

}  // namespace

std::vector<QRectF> paint_graticule(
    QPainter& painter, const QRectF& plot, std::span<const GraticuleLine> lines,
    const std::function<QPointF(const numerics::geodesy::MapPlace&)>& to_pixel) {
  const QFontMetricsF metrics(painter.font());
  std::vector<QPolygonF> polygons;
  painter.save();
  painter.setClipRect(plot);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(line_colour, 1.0));
  for (const GraticuleLine& line : lines) {
    QPolygonF& polygon = polygons.emplace_back();
    for (const numerics::geodesy::MapPlace& place : line.places) {
      polygon.append(to_pixel(place));
    }
    painter.drawPolyline(polygon);
  }
  std::vector<QRectF> rooms = reserved_rooms(plot);
  painter.setPen(label_colour);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto at = crossing(polygons[i], plot, lines[i].meridian);
    if (!at) {
      continue;
    }
    const QString label = QString::fromStdString(lines[i].label);
    const QSizeF text(metrics.horizontalAdvance(label), metrics.height());
    const QRectF room = label_room(text, *at, plot, lines[i].meridian);
    if (plot.contains(room) &&
        std::ranges::none_of(rooms, [&](const QRectF& taken) { return taken.intersects(room); })) {
      painter.fillRect(room, Qt::white);
      painter.drawText(room, Qt::AlignCenter | Qt::TextDontClip, label);
      rooms.push_back(room);
    }
  }
  painter.restore();
  return rooms;
}

}  // namespace Module_tensor
