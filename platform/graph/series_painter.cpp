#include "platform/graph/series_painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace graph {
namespace {

constexpr double outside = 20.0;  // pixels beyond the plot area where a line may be cut unseen
constexpr double cap = 3.0;       // half the width of an error bar's ends, pixels

/// A marker, rendered once and then copied: a copy costs a tenth of an antialiased ellipse.
class MarkerStamps {
 public:
  MarkerStamps(Marker marker, double radius, double device_ratio)
      : marker_(marker), radius_(radius), device_ratio_(device_ratio) {}

  void draw(QCPPainter& painter, QPointF at, const QColor& colour) {
    const QPixmap& stamp = of(colour);
    const double half = stamp.width() / device_ratio_ / 2.0;
    // On whole device pixels the copy needs no interpolation and the marker stays crisp.
    const QPointF corner(std::round((at.x() - half) * device_ratio_) / device_ratio_,
                         std::round((at.y() - half) * device_ratio_) / device_ratio_);
    painter.drawPixmap(corner, stamp);
  }

 private:
  const QPixmap& of(const QColor& colour) {
    const auto found = stamps_.find(colour.rgba());
    if (found != stamps_.end()) {
      return found->second;
    }
    const int side = 2 * static_cast<int>(std::ceil(radius_ * device_ratio_)) + 3;
    QPixmap stamp(side, side);
    stamp.setDevicePixelRatio(device_ratio_);
    stamp.fill(Qt::transparent);
    QPainter painter(&stamp);
    painter.setRenderHint(QPainter::Antialiasing);
    const double centre = side / device_ratio_ / 2.0;
    draw_marker(painter, {centre, centre}, colour, radius_, false, marker_);
    return stamps_.emplace(colour.rgba(), std::move(stamp)).first->second;
  }

  Marker marker_;
  double radius_;
  double device_ratio_;
  std::map<QRgb, QPixmap> stamps_;
};

}  // namespace

bool clip_segment(const QRectF& area, QPointF& from, QPointF& to) {
  // Liang and Barsky (1984), ACM Transactions on Graphics 3, 1-22.
  const QPointF d = to - from;
  const std::array<std::array<double, 2>, 4> edges = {{{-d.x(), from.x() - area.left()},
                                                       {d.x(), area.right() - from.x()},
                                                       {-d.y(), from.y() - area.top()},
                                                       {d.y(), area.bottom() - from.y()}}};
  double enter = 0.0;
  double leave = 1.0;
  for (const auto& [p, q] : edges) {
    if (p == 0.0) {
      if (q < 0.0) {
        return false;
      }
    } else if (p < 0.0) {
      enter = std::max(enter, q / p);
    } else {
      leave = std::min(leave, q / p);
    }
  }
  if (enter > leave) {
    return false;
  }
  to = from + leave * d;
  from += enter * d;
  return true;
}

void draw_marker(QPainter& painter, QPointF at, const QColor& colour, double radius, bool masked,
                 Marker marker) {
  if (masked) {
    painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::FlatCap));
    const double arm = radius + 0.2;
    painter.drawLine(QLineF(at.x() - arm, at.y() - arm, at.x() + arm, at.y() + arm));
    painter.drawLine(QLineF(at.x() - arm, at.y() + arm, at.x() + arm, at.y() - arm));
    return;
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  if (marker == Marker::square) {
    const double half = 0.9 * radius;  // of about the same area as the disc
    painter.drawRect(QRectF(at.x() - half, at.y() - half, 2.0 * half, 2.0 * half));
  } else {
    painter.drawEllipse(at, radius, radius);
  }
}

namespace {

void draw_ring(QPainter& painter, QPointF at, double radius, const QColor& colour) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colour, 1.8));
  painter.drawEllipse(at, radius, radius);
}

}  // namespace

void draw_edge_marker(QPainter& painter, const MarkerPlace& place, const QColor& colour, double radius,
                      bool masked) {
  const double half = radius + 1.0;
  const double tip = place.beyond == Beyond::upper ? -half : half;
  const QPolygonF triangle(
      {place.at + QPointF(0.0, tip), place.at + QPointF(half, -tip), place.at + QPointF(-half, -tip)});
  painter.setPen(masked ? QPen(colour, 1.4) : QPen(Qt::NoPen));
  painter.setBrush(masked ? QBrush(Qt::white) : QBrush(colour));
  painter.drawPolygon(triangle);
}

SeriesPainter::SeriesPainter(QCustomPlot& plot, const GraphContent& content)
    : QCPLayerable(&plot, QStringLiteral("main")),
      content_(content),
      x_axis_(*plot.xAxis),
      y_axis_(*plot.yAxis) {}

QRect SeriesPainter::clipRect() const { return x_axis_.axisRect()->rect(); }

void SeriesPainter::applyDefaultAntialiasingHint(QCPPainter* painter) const {
  painter->setAntialiasing(true);
}

void SeriesPainter::draw(QCPPainter* painter) {
  for (const int series : content_.drawing_order()) {
    place_points(series);
    if (error_bars_) {
      draw_error_bars(*painter, series);
    }
    if (content_.series_style(series).line) {
      draw_line(*painter, series);
    }
    draw_markers(*painter, series);
  }
}

void SeriesPainter::place_points(int series) {
  placed_.clear();
  for (int p = 0; p < content_.point_count(series); ++p) {
    const std::optional<QPointF> at = point_position(content_, {series, p}, x_axis_, y_axis_);
    placed_.push_back({at.value_or(QPointF()), at.has_value()});
  }
}

void SeriesPainter::draw_error_bars(QCPPainter& painter, int series) const {
  const QRectF area = QRectF(clipRect()).adjusted(-outside, -outside, outside, outside);
  painter.setPen(QPen(content_.line_colour(series), 1.0));
  for (int p = 0; p < content_.point_count(series); ++p) {
    const PlacedPoint& point = placed_[static_cast<std::size_t>(p)];
    const std::optional<double> error = content_.error(series, p);
    if (!point.drawn || !error || content_.point_style(series, p) == masked_point) {
      continue;
    }
    const double y = content_.series(series).y[static_cast<std::size_t>(p)];
    const bool open_below = y_axis_.scaleType() == QCPAxis::stLogarithmic && y - *error <= 0.0;
    const QPointF high(point.at.x(), y_axis_.coordToPixel(y + *error));
    const QPointF low(point.at.x(), open_below ? area.bottom() : y_axis_.coordToPixel(y - *error));
    QPointF from = high;
    QPointF to = low;
    if (!clip_segment(area, from, to)) {
      continue;
    }
    painter.drawLine(QLineF(from, to));
    const QPointF half_cap(cap, 0.0);
    if (from == high) {
      painter.drawLine(QLineF(high - half_cap, high + half_cap));
    }
    if (to == low && !open_below) {
      painter.drawLine(QLineF(low - half_cap, low + half_cap));
    }
  }
}

void SeriesPainter::draw_line(QCPPainter& painter, int series) const {
  const QRectF area = QRectF(clipRect()).adjusted(-outside, -outside, outside, outside);
  QPen pen(content_.line_colour(series), content_.series_style(series).width);
  pen.setStyle(content_.series_style(series).dashed ? Qt::DashLine : Qt::SolidLine);
  pen.setJoinStyle(Qt::BevelJoin);  // a mitre at a spike would reach far beyond its point
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  QPolygonF run;
  const auto finish_run = [&] {
    if (run.size() > 1) {
      painter.drawPolyline(run);
    }
    run.clear();
  };
  for (std::size_t p = 1; p < placed_.size(); ++p) {
    QPointF from = placed_[p - 1].at;
    QPointF to = placed_[p].at;
    if (!placed_[p - 1].drawn || !placed_[p].drawn || !clip_segment(area, from, to)) {
      finish_run();
      continue;
    }
    if (run.isEmpty() || run.last() != from) {
      finish_run();
      run.append(from);
    }
    run.append(to);
  }
  finish_run();
}

void SeriesPainter::draw_markers(QCPPainter& painter, int series) const {
  const double radius = content_.marker_radius(series);
  const QRectF area = QRectF(clipRect()).adjusted(-outside, -outside, outside, outside);
  const bool exact = painter.modes().testFlag(QCPPainter::pmNoCaching);  // exports keep true shapes
  const Marker marker = content_.series_style(series).marker;
  MarkerStamps stamps(marker, radius, painter.device()->devicePixelRatioF());
  for (int p = 0; p < content_.point_count(series); ++p) {
    const PlacedPoint& point = placed_[static_cast<std::size_t>(p)];
    const MarkerPlace place = marker_place(content_, point.at, y_axis_);
    if (!point.drawn || !area.contains(place.at)) {
      continue;
    }
    const bool masked = content_.point_style(series, p) == masked_point;
    const QColor colour = content_.point_colour(series, p);
    if (place.beyond != Beyond::neither) {
      draw_edge_marker(painter, place, colour, radius, masked);
    } else if (masked || exact) {
      draw_marker(painter, place.at, colour, radius, masked, marker);
    } else {
      stamps.draw(painter, place.at, colour);
    }
    if (content_.is_ringed(series, p)) {
      draw_ring(painter, place.at, radius + 3.0, QColor(200, 0, 110));
    }
    if (content_.is_chosen(series, p)) {
      draw_ring(painter, place.at, radius + 5.0, QColor(0, 130, 60));
    }
  }
}

}  // namespace graph
