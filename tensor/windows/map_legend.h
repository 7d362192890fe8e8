// map_legend.h: what says how to read a map: scale, north, colours, arrows.
#pragma once
#include <QColor>
#include <QPainter>
#include <QRectF>

#include "tensor/map_contents.h"

namespace Module_tensor {

inline constexpr double legend_room = 176.0;  // pixels beside the plan
inline constexpr double arrow_width = 1.5;
inline constexpr QColor real_colour(0, 0, 0);
inline constexpr QColor imaginary_colour(0, 114, 178);  // differs from black to every kind of colour vision

/// Pixels of an arrow of length 1.
double arrow_pixels(const MapLook& look);

/// The arrow that says that up is north, at the upper right of a plan.
void paint_north(QPainter& painter, const QRectF& plot);
/// The scale bar at the lower left, the north arrow at the upper right of the plan.
void paint_scale_and_north(QPainter& painter, const QRectF& plot, const PlanFrame& frame);

/// Colour bar, arrows of a known length with their convention, and what light outlines mean.
void paint_legend(QPainter& painter, const QRectF& room, const MapContents& contents);

}  // namespace Module_tensor
