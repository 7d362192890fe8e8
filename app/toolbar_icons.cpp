#include "app/toolbar_icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>
#include <initializer_list>

namespace {

constexpr double grid = 24.0;  // units of the drawings, from the upper left corner
constexpr double line_width = 1.8;

// Of the two modes, and of values in a section: readable on light and on dark.
constexpr QColor blue(40, 120, 220);
constexpr QColor orange(230, 120, 20);
constexpr QColor green(60, 160, 90);

QPainterPath polyline(std::initializer_list<QPointF> points) {
  QPainterPath path(*points.begin());
  for (const QPointF& point : points) {
    path.lineTo(point);
  }
  return path;
}

QPainterPath curve(QPointF from, QPointF control_1, QPointF control_2, QPointF to) {
  QPainterPath path(from);
  path.cubicTo(control_1, control_2, to);
  return path;
}

void draw_folder(QPainter& painter) {
  painter.drawPath(polyline({{3, 19}, {3, 5}, {9, 5}, {11, 8}, {20, 8}, {20, 11}}));
  painter.drawPath(polyline({{3, 19}, {6, 11}, {22.5, 11}, {19.5, 19}, {3, 19}}));
}

/// An arrow into a tray, or out of it.
void draw_tray(QPainter& painter, bool out) {
  painter.drawPath(polyline({{4, 14}, {4, 20}, {20, 20}, {20, 14}}));
  painter.drawLine(QPointF(12, 3), QPointF(12, 15));
  painter.drawPath(out ? polyline({{7.5, 7.5}, {12, 3}, {16.5, 7.5}})
                       : polyline({{7.5, 10.5}, {12, 15}, {16.5, 10.5}}));
}

void draw_turning_arrow(QPainter& painter) {
  painter.drawPath(curve({5, 9}, {19, 6}, {23, 15}, {13, 20}));
  painter.drawPath(polyline({{9.5, 4}, {5, 9}, {10.5, 13}}));
}

void draw_step(QPainter& painter) { painter.drawPath(polyline({{15, 5}, {8, 12}, {15, 19}})); }

void mirror(QPainter& painter) {
  painter.translate(grid, 0.0);
  painter.scale(-1.0, 1.0);
}

void draw_axes(QPainter& painter) { painter.drawPath(polyline({{4, 3}, {4, 20}, {21, 20}})); }

void draw_in(QPainter& painter, const QColor& colour, const QPainterPath& path) {
  QPen pen = painter.pen();
  const QPen before = pen;
  pen.setColor(colour);
  pen.setWidthF(1.3 * line_width);
  painter.setPen(pen);
  painter.drawPath(path);
  painter.setPen(before);
}

void draw_both_modes(QPainter& painter) {
  draw_axes(painter);
  draw_in(painter, blue, curve({7, 7}, {12, 4}, {15, 12}, {20, 8}));
  draw_in(painter, orange, curve({7, 12}, {12, 10}, {14, 18}, {20, 15}));
}

void draw_pseudo_section(QPainter& painter) {
  const QColor rows[3][3] = {{blue, green, orange}, {green, orange, orange}, {blue, blue, green}};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      painter.fillRect(QRectF(5.5 + 5.2 * column, 3.0 + 5.2 * row, 4.6, 4.6), rows[row][column]);
    }
  }
  draw_axes(painter);
}

/// A sounding and the steps of its layers.
void draw_invert(QPainter& painter) {
  draw_axes(painter);
  draw_in(painter, orange, polyline({{7, 7}, {12, 7}, {12, 15}, {16, 15}, {16, 10}, {20, 10}}));
}

/// A mesh with a body in it.
void draw_inversion(QPainter& painter) {
  painter.fillRect(QRectF(8, 10, 8, 5), orange);
  painter.drawRect(QRectF(3, 5, 18, 15));
  QPen fine = painter.pen();
  fine.setWidthF(0.5 * line_width);
  painter.setPen(fine);
  for (const double x : {8.0, 12.0, 16.0}) {
    painter.drawLine(QPointF(x, 5), QPointF(x, 20));
  }
  for (const double y : {7.5, 10.0, 15.0}) {
    painter.drawLine(QPointF(3, y), QPointF(21, y));
  }
}

void draw(QPainter& painter, ToolbarIcon icon) {
  switch (icon) {
    case ToolbarIcon::open:
      return draw_folder(painter);
    case ToolbarIcon::import_files:
      return draw_tray(painter, false);
    case ToolbarIcon::redo:
      mirror(painter);
      return draw_turning_arrow(painter);
    case ToolbarIcon::undo:
      return draw_turning_arrow(painter);
    case ToolbarIcon::next:
      mirror(painter);
      return draw_step(painter);
    case ToolbarIcon::previous:
      return draw_step(painter);
    case ToolbarIcon::both_modes:
      return draw_both_modes(painter);
    case ToolbarIcon::pseudo_section:
      return draw_pseudo_section(painter);
    case ToolbarIcon::invert:
      return draw_invert(painter);
    case ToolbarIcon::inversion:
      return draw_inversion(painter);
    case ToolbarIcon::export_files:
      return draw_tray(painter, true);
  }
}

class LineIcon final : public QIconEngine {
 public:
  explicit LineIcon(ToolbarIcon icon) : icon_(icon) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(mode == QIcon::Disabled ? 0.5 : 1.0);
    const double side = std::min(rect.width(), rect.height());
    painter->translate(rect.center().x() + 0.5 - side / 2.0, rect.center().y() + 0.5 - side / 2.0);
    painter->scale(side / grid, side / grid);
    painter->setPen(QPen(QGuiApplication::palette().color(group, QPalette::ButtonText), line_width,
                         Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    draw(*painter, icon_);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);  // in device pixels
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect({}, size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new LineIcon(icon_); }

 private:
  ToolbarIcon icon_;
};

}  // namespace

QIcon toolbar_icon(ToolbarIcon icon) { return QIcon(new LineIcon(icon)); }
