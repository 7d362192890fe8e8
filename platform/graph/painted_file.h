// painted_file.h: a picture that is painted by its owner, as a file.
#pragma once
#include <QPainter>
#include <QSize>
#include <QString>
#include <functional>

namespace graph {

/// Paints within an area; pen and letters are those of all pictures (picture_axes.h).
using PaintPicture = std::function<void(QPainter& painter, const QRectF& area)>;

/// Writes a picture as PNG, twice as fine as on screen, or as vectors in a PDF, by the ending of the path.
/// Throws std::runtime_error with the reason; an earlier file at the path is then as before.
/// @param size  device-independent pixels
void write_painted(const QString& path, const QString& title, QSize size, const PaintPicture& paint);

}  // namespace graph
