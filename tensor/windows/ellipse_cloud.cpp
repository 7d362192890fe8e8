#include "tensor/windows/ellipse_cloud.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/graph/picture_axes.h"
#include "tensor/windows/glyph_painter.h"

namespace Module_tensor {

namespace {

constexpr double small_radius = 7.0;  // pixels
constexpr double least_ratio = 0.12;  // of the half axes: a thinner one would vanish between the dots
constexpr int outline_points = 32;

}  // namespace

EllipseCloud::EllipseCloud(QPainter& painter, const QRectF& area, double radius)
    : painter_(painter), area_(area), radius_(radius) {
  const QPaintEngine* const engine = painter.paintEngine();
  if (radius <= small_radius && engine != nullptr && engine->type() == QPaintEngine::Raster) {
    dots_per_pixel_ = painter.device()->devicePixelRatioF();
    dots_ =
        QImage((area.size() * dots_per_pixel_).toSize() + QSize(1, 1), QImage::Format_ARGB32_Premultiplied);
    dots_.setDevicePixelRatio(dots_per_pixel_);
    dots_.fill(Qt::transparent);
  } else {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(40, 40, 40), 0.6));
  }
}

void EllipseCloud::add(const numerics::impedance::PhaseTensor& tensor, QPointF centre,
                       const graph::Colour& colour) {
  if (dots_.isNull()) {
    paint_ellipse(painter_, ellipse_outline(tensor, outline_points), centre, radius_, graph::to_qt(colour));
  } else {
    add_dots(tensor, (centre - area_.topLeft()) * dots_per_pixel_, graph::to_qt(colour).rgb());
  }
}

/// A dot belongs to the ellipse where (along / a)^2 + (across / b)^2 <= 1, in the directions of its axes.
void EllipseCloud::add_dots(const numerics::impedance::PhaseTensor& tensor, QPointF centre, QRgb colour) {
  const double azimuth = tensor.azimuth.has_value() ? tensor.azimuth.value * std::numbers::pi / 180.0 : 0.0;
  const double ratio = std::clamp(std::abs(tensor.phi_min.value / tensor.phi_max.value), least_ratio, 1.0);
  const double radius = radius_ * dots_per_pixel_;
  const double east = std::sin(azimuth) / radius;
  const double north = std::cos(azimuth) / radius;
  const auto first = [radius](double at) { return std::max(static_cast<int>(std::floor(at - radius)), 0); };
  const int right = std::min(static_cast<int>(std::ceil(centre.x() + radius)), dots_.width() - 1);
  const int bottom = std::min(static_cast<int>(std::ceil(centre.y() + radius)), dots_.height() - 1);
  for (int row = first(centre.y()); row <= bottom; ++row) {
    auto* const line = reinterpret_cast<QRgb*>(dots_.scanLine(row));
    const double up = centre.y() - (row + 0.5);
    for (int column = first(centre.x()); column <= right; ++column) {
      const double away = column + 0.5 - centre.x();
      const double along = away * east + up * north;
      const double across = (away * north - up * east) / ratio;
      if (along * along + across * across <= 1.0) {
        line[column] = colour;
      }
    }
  }
}

void EllipseCloud::finish() {
  if (!dots_.isNull()) {
    painter_.drawImage(area_.topLeft(), dots_);
  }
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace Module_tensor
