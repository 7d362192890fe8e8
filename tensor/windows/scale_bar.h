// scale_bar.h: the bar that says which value a colour stands for.
#pragma once
#include <QPainter>
#include <QRectF>
#include <QString>

#include "tensor/colour_scale.h"

namespace Module_tensor {

/// How the numbers beside a bar are written.
enum class ScaleNumbers : std::uint8_t {
  plain,
  powers  // of a quantity whose colours go by its decimal logarithm: 10, 100 at 1, 2
};

/// The room that a bar needs beside its picture, pixels, its numbers included.
inline constexpr double scale_bar_room = 72.0;
inline constexpr double scale_bar_width = 14.0;

/// Draws an upright bar, with its unit above it, and marks with numbers on its right.
void draw_scale_bar(QPainter& painter, const QRectF& bar, const ColourScale& scale, const QString& unit,
                    ScaleNumbers numbers = ScaleNumbers::plain);

}  // namespace Module_tensor
