// ellipse_cloud.h: thousands of phase tensor ellipses of one size.
//
// Large ones are polygons with an outline. Those of a few pixels are drawn dot by dot, where the picture is
// made of dots: a whole line of them is redrawn while a pointer moves.
#pragma once
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QRectF>

#include "numerics/impedance/phase_tensor.h"
#include "platform/graph/plot_table.h"

namespace Module_tensor {

class EllipseCloud {
 public:
  /// @param area    what is seen of them, pixels
  /// @param radius  of the longer half axis of each, pixels
  EllipseCloud(QPainter& painter, const QRectF& area, double radius);

  void add(const numerics::impedance::PhaseTensor& tensor, QPointF centre, const graph::Colour& colour);
  void finish();

 private:
  void add_dots(const numerics::impedance::PhaseTensor& tensor, QPointF centre, QRgb colour);

  QPainter& painter_;
  QRectF area_;
  double radius_;
  double dots_per_pixel_ = 1.0;
  QImage dots_;  // null: they are polygons
};

}  // namespace Module_tensor
