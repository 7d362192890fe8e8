#include "tensor/windows/map_legend.h"

#include <QFontMetricsF>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/number_text.h"
#include "tensor/windows/glyph_painter.h"
#include "tensor/windows/scale_bar.h"

namespace Module_tensor {

namespace {

constexpr double edge = 12.0;
constexpr QRgb backing = 0xd8ffffffU;  // glyphs shine through

QString text_of(const std::string& text) { return QString::fromStdString(text); }

double line_height(const QPainter& painter) { return QFontMetricsF(painter.font()).height(); }

void paint_scale(QPainter& painter, const QRectF& plot, const PlanFrame& frame) {
  constexpr double share = 0.25;  // of the width
  constexpr double kilometre = 1000.0;
  const double length = bar_length(frame, share * plot.width());
  const double pixels = length * frame.scale;
  const QString text =
      text_of(length >= kilometre ? plain_text(length / kilometre) + " km" : plain_text(length) + " m");
  const QPointF left(plot.left() + edge, plot.bottom() - edge);
  const QPointF right(left.x() + pixels, left.y());
  const QPointF cap(0.0, 4.0);
  const double high = line_height(painter) + cap.y();
  painter.fillRect(QRectF(left.x() - 4.0, left.y() - high - 2.0, pixels + 8.0, high + 6.0),
                   QColor::fromRgba(backing));
  painter.setPen(QPen(Qt::black, 1.5));
  painter.drawLine(left, right);
  painter.drawLine(left - cap, left);
  painter.drawLine(right - cap, right);
  painter.drawText(QRectF(left.x(), left.y() - high, pixels, high - 1.0),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextDontClip, text);
}

/// The largest round length whose arrow has room.
double legend_length(double pixels) {
  constexpr std::array lengths{1.0, 0.5, 0.2, 0.1, 0.05, 0.02};
  constexpr double room = 60.0;
  const auto found = std::ranges::find_if(lengths, [&](double length) { return length * pixels <= room; });
  return found == lengths.end() ? lengths.back() : *found;
}

/// @return the y below
double paint_wrapped(QPainter& painter, const QRectF& room, double top, const QString& text) {
  const QRectF within(room.left(), top, room.width(), std::max(room.bottom() - top, 0.0));
  QRectF taken;
  painter.setPen(Qt::black);
  painter.drawText(within, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text, &taken);
  return taken.bottom() + 6.0;
}

double paint_arrow_key(QPainter& painter, const QRectF& room, double top, const MapLook& look) {
  const double pixels = arrow_pixels(look);
  const double length = legend_length(pixels);
  const double line = line_height(painter);
  const auto paint = [&](const char* what, const QColor& colour) {
    const double middle = top + 0.5 * line;
    painter.setPen(QPen(colour, arrow_width));
    paint_arrow(painter, QPointF(room.left(), middle), {pixels * length, 0.0}, colour);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(room.left() + pixels * length + 6.0, top, room.width(), line),
                     Qt::AlignLeft | Qt::AlignVCenter, text_of(plain_text(length) + what));
    top += line + 4.0;
  };
  if (look.real_arrows) {
    paint(" real", real_colour);
  }
  if (look.imaginary_arrows) {
    paint(" imaginary", imaginary_colour);
  }
  return paint_wrapped(painter, room, top, text_of(convention_text(look.arrows)));
}

bool any_cut(const MapContents& contents) {
  const auto is_cut = [](const std::optional<numerics::impedance::Arrow>& arrow) {
    return arrow && limited_tip({arrow->east, arrow->north}).is_cut;
  };
  return std::ranges::any_of(contents.values, [&](const SiteValues& values) {
    return (contents.look.real_arrows && is_cut(values.real_arrow)) ||
           (contents.look.imaginary_arrows && is_cut(values.imaginary_arrow));
  });
}

double paint_colours(QPainter& painter, const QRectF& room, double top, const MapLook& look) {
  constexpr double below = 190.0;  // for the other keys
  constexpr double least = 60.0;
  constexpr double largest = 240.0;
  const double line = line_height(painter);
  const double high = std::clamp(room.height() - below - (top - room.top()), least, largest);
  top = paint_wrapped(painter, room, top,
                      text_of(std::string(ellipse_fill_names[static_cast<std::size_t>(look.fill)])));
  top += 2.0 * line - 6.0;  // the unit stands there
  painter.setPen(Qt::black);
  draw_scale_bar(painter, QRectF(room.left(), top, scale_bar_width, high), look.scale,
                 text_of(std::string(unit_of(look.fill))));
  return top + high + line;
}

bool any_uncertain(const MapContents& contents) {
  return std::ranges::any_of(contents.values, [](const SiteValues& values) {
    return values.phase_tensor && is_uncertain(*values.phase_tensor);
  });
}

/// At any period: the legend stays while periods change.
bool any_tipper(const MapContents& contents) {
  return std::ranges::any_of(contents.map.sites,
                             [](const MapSite& site) { return !site.station.tipper.empty(); });
}

bool any_without(const MapContents& contents) {
  return std::ranges::any_of(contents.values, [](const SiteValues& values) { return !values.any(); });
}

}  // namespace

double arrow_pixels(const MapLook& look) {
  constexpr double usual = 150.0;
  return usual * look.arrow_size;
}

void paint_north(QPainter& painter, const QRectF& plot) {
  constexpr double length = 34.0;
  const double line = line_height(painter);
  const QPointF foot(plot.right() - edge - 8.0, plot.top() + edge + line + length);
  painter.fillRect(QRectF(foot.x() - 10.0, plot.top() + edge - 4.0, 20.0, line + length + 8.0),
                   QColor::fromRgba(backing));
  painter.setPen(QPen(Qt::black, 1.5));
  paint_arrow(painter, foot, {0.0, length}, Qt::black);
  painter.setPen(Qt::black);
  painter.drawText(QRectF(foot.x() - 10.0, plot.top() + edge - 2.0, 20.0, line), Qt::AlignCenter, "N");
}

void paint_scale_and_north(QPainter& painter, const QRectF& plot, const PlanFrame& frame) {
  paint_scale(painter, plot, frame);
  paint_north(painter, plot);
}

void paint_legend(QPainter& painter, const QRectF& room, const MapContents& contents) {
  const QRectF inside = room.adjusted(14.0, 22.0, -6.0, -4.0);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  double top = inside.top();
  if (contents.look.ellipses) {
    top = paint_colours(painter, inside, top, contents.look);
    if (any_uncertain(contents)) {
      top = paint_wrapped(painter, inside, top, "Light outline: direction or skew uncertain");
    }
  }
  if (any_tipper(contents) && (contents.look.real_arrows || contents.look.imaginary_arrows)) {
    top = paint_arrow_key(painter, inside, top, contents.look);
    if (any_cut(contents)) {
      top = paint_wrapped(painter, inside, top, "Dotted: longer than 1, drawn as 1");
    }
  }
  if (any_without(contents)) {
    paint_wrapped(painter, inside, top, "White dot: no values at this period");
  }
  painter.restore();
}

}  // namespace Module_tensor
