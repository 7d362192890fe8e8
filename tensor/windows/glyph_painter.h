// glyph_painter.h: draws the shapes that stand for tensors and tippers. Equal scales to the right and up,
// whatever the axes of the picture are: an ellipse on a logarithmic axis would lie.
#pragma once
#include <QBrush>
#include <QColor>
#include <QPainter>
#include <QPointF>
#include <span>

#include "tensor/glyphs.h"

namespace Module_tensor {

/// An ellipse with the painter's pen.
/// @param outline  as of ellipse_outline; nothing is drawn of an empty one
/// @param radius   pixels of its longest half axis
void paint_ellipse(QPainter& painter, std::span<const GlyphPoint> outline, QPointF centre, double radius,
                   const QBrush& fill);

/// An arrow of one colour with the width of the painter's pen.
/// @param tip  from its beginning, pixels to the right and up; nothing is drawn of one without length
void paint_arrow(QPainter& painter, QPointF from, GlyphPoint tip, const QColor& colour,
                 Qt::PenStyle shaft = Qt::SolidLine);

}  // namespace Module_tensor
