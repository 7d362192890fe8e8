// picture_axes.h: what surrounds a coloured picture: axes, colour bar, names along an edge.
#pragma once
#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "platform/graph/image_palette.h"

namespace graph {

struct PictureTick {
  double at = 0.0;  // pixels along the axis
  QString label;
};

/// Pen and letters of all pictures, whatever the desktop has.
void use_picture_style(QPainter& painter);
/// A font in the size of those letters.
QFont picture_font(QFont font);

/// Even ticks whose labels don't run into each other.
/// @param to_pixel  from a value to a place; the axis covers [lower, upper]
std::vector<PictureTick> even_ticks(const QPainter& painter, double lower, double upper, double pixels,
                                    bool upright, const std::function<double(double)>& to_pixel);

/// The ticks whose labels have room, earlier ones taking precedence.
std::vector<PictureTick> ticks_with_room(const std::vector<PictureTick>& ticks, double min_distance);

void draw_bottom_axis(QPainter& painter, const QRectF& plot, const std::vector<PictureTick>& ticks,
                      const QString& title);
void draw_left_axis(QPainter& painter, const QRectF& plot, const std::vector<PictureTick>& ticks,
                    const QString& title);

/// Pixels that marks and labels take on the right of a colour bar.
double colour_bar_room(const QFontMetricsF& metrics, const QStringList& labels);

/// A bar of all colours, the first one at the bottom, with marks on its right.
void draw_colour_bar(QPainter& painter, const QRectF& bar, const Palette& palette,
                     const std::vector<PictureTick>& ticks, const QString& title);
/// The same with even marks.
void draw_colour_bar(QPainter& painter, const QRectF& bar, const Palette& palette, double lower, double upper,
                     const QString& title);

inline QColor to_qt(const Colour& colour) { return {colour.red, colour.green, colour.blue}; }

}  // namespace graph
