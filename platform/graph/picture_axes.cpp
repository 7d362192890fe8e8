#include "platform/graph/picture_axes.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "platform/graph/axis_ticks.h"

namespace graph {

namespace {

constexpr double tick_length = 4.0;
constexpr double label_gap = 2.0;

double text_height(const QPainter& painter) { return QFontMetricsF(painter.font()).height(); }

}  // namespace

std::vector<PictureTick> even_ticks(const QPainter& painter, double lower, double upper, double pixels,
                                    bool upright, const std::function<double(double)>& to_pixel) {
  constexpr double gap = 12.0;
  const QFontMetricsF metrics(painter.font());
  TickRoom room;
  room.pixels = pixels;
  room.gap = upright ? gap / 2.0 : gap;
  room.extent = [&metrics, upright](const QString& label) {
    return upright ? metrics.height() : metrics.horizontalAdvance(label);
  };
  const AxisTicks ticks = linear_ticks({lower, upper}, room);
  std::vector<PictureTick> result;
  for (qsizetype i = 0; i < ticks.major.size(); ++i) {
    result.push_back({to_pixel(ticks.major[i]), ticks.labels[i]});
  }
  return result;
}

std::vector<PictureTick> ticks_with_room(const std::vector<PictureTick>& ticks, double min_distance) {
  std::vector<PictureTick> result;
  for (const PictureTick& tick : ticks) {
    if (result.empty() || std::abs(tick.at - result.back().at) >= min_distance) {
      result.push_back(tick);
    }
  }
  return result;
}

void use_picture_style(QPainter& painter) {
  painter.setFont(picture_font(painter.font()));
  painter.setPen(Qt::black);
}

QFont picture_font(QFont font) {
  constexpr int font_pixels = 11;
  font.setPixelSize(font_pixels);
  return font;
}

double colour_bar_room(const QFontMetricsF& metrics, const QStringList& labels) {
  double widest = 0.0;
  for (const QString& label : labels) {
    widest = std::max(widest, metrics.horizontalAdvance(label));
  }
  return tick_length + label_gap + std::ceil(widest) + label_gap;
}

void draw_bottom_axis(QPainter& painter, const QRectF& plot, const std::vector<PictureTick>& ticks,
                      const QString& title) {
  constexpr double half_label = 60.0;
  const double line = text_height(painter);
  const double top = plot.bottom() + tick_length + label_gap;
  for (const PictureTick& tick : ticks) {
    painter.drawLine(QPointF(tick.at, plot.bottom()), QPointF(tick.at, plot.bottom() + tick_length));
    painter.drawText(QRectF(tick.at - half_label, top, 2.0 * half_label, line),
                     Qt::AlignCenter | Qt::TextDontClip, tick.label);
  }
  painter.drawText(QRectF(plot.left(), top + line, plot.width(), line), Qt::AlignCenter, title);
}

void draw_left_axis(QPainter& painter, const QRectF& plot, const std::vector<PictureTick>& ticks,
                    const QString& title) {
  const double line = text_height(painter);
  const double right = plot.left() - tick_length - label_gap;
  for (const PictureTick& tick : ticks) {
    painter.drawLine(QPointF(plot.left() - tick_length, tick.at), QPointF(plot.left(), tick.at));
    painter.drawText(QRectF(0.0, tick.at - line / 2.0, right, line), Qt::AlignRight | Qt::AlignVCenter,
                     tick.label);
  }
  painter.save();
  painter.translate(0.0, plot.center().y());
  painter.rotate(-90.0);
  painter.drawText(QRectF(-plot.height() / 2.0, 0.0, plot.height(), line), Qt::AlignCenter, title);
  painter.restore();
}

void draw_colour_bar(QPainter& painter, const QRectF& bar, const Palette& palette,
                     const std::vector<PictureTick>& ticks, const QString& title) {
  constexpr int entries = last_palette_entry - first_palette_entry + 1;
  for (int i = 0; i < entries; ++i) {
    // Edges on whole pixels: half-covered ones would show as seams between the colours.
    const double top = std::round(bar.bottom() - bar.height() * (i + 1) / entries);
    const double bottom = std::round(bar.bottom() - bar.height() * i / entries);
    painter.fillRect(QRectF(bar.left(), top, bar.width(), bottom - top),
                     to_qt(palette[static_cast<std::size_t>(i) + first_palette_entry]));
  }
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(bar);
  const double line = text_height(painter);
  for (const PictureTick& tick : ticks) {
    painter.drawLine(QPointF(bar.right(), tick.at), QPointF(bar.right() + tick_length, tick.at));
    painter.drawText(QRectF(bar.right() + tick_length + label_gap, tick.at - line / 2.0, 0.0, line),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, tick.label);
  }
  painter.drawText(QRectF(bar.left() - label_gap, bar.top() - 2.0 * line, 0.0, line),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, title);
}

void draw_colour_bar(QPainter& painter, const QRectF& bar, const Palette& palette, double lower, double upper,
                     const QString& title) {
  const auto to_pixel = [&](double value) {
    return bar.bottom() - bar.height() * (value - lower) / (upper - lower);
  };
  draw_colour_bar(painter, bar, palette, even_ticks(painter, lower, upper, bar.height(), true, to_pixel),
                  title);
}

}  // namespace graph
