// graticule_painter.h: the lines of latitude and longitude behind a plan.
#pragma once
#include <QPainter>
#include <QRectF>
#include <functional>
#include <span>
#include <vector>

#include "projections/graticule.h"

namespace Module_tensor {

/// Draws the lines within a plot, pale, each with its value where it enters: meridians at the top, parallels
/// on the left. Letters are those of the painter.
/// @param to_pixel  from map coordinates to the picture
/// @return what the values cover
std::vector<QRectF> paint_graticule(
    QPainter& painter, const QRectF& plot, std::span<const Module_projections::GraticuleLine> lines,
    const std::function<QPointF(const numerics::geodesy::MapPlace&)>& to_pixel);

}  // namespace Module_tensor
