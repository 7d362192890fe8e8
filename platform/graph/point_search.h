// point_search.h: which point of a chart lies under the pointer.
#pragma once
#include <QPointF>
#include <QRectF>
#include <optional>
#include <vector>

#include "platform/graph/graph_content.h"

class QCPAxis;

namespace graph {

/// The place of a point in the widget, device-independent pixels; nothing if it isn't drawn on these axes.
std::optional<QPointF> point_position(const GraphContent& content, PointIndex at, const QCPAxis& x,
                                      const QCPAxis& y);

/// Which end of the y axis a point lies beyond.
enum class Beyond { neither, lower, upper };

/// The marker of a point.
struct MarkerPlace {
  QPointF at;  // device-independent pixels
  Beyond beyond = Beyond::neither;
};

/// The marker of a point that lies at `position`: there, or at the end of the y axis that the point lies
/// beyond, if such points are marked.
MarkerPlace marker_place(const GraphContent& content, QPointF position, const QCPAxis& y);

/// The drawn point inside `area` nearest to `position`, within `radius` pixels; of points at the same place
/// the one drawn last. A point is where its marker is.
std::optional<PointIndex> nearest_point(const GraphContent& content, const QCPAxis& x, const QCPAxis& y,
                                        const QRectF& area, QPointF position, double radius);

/// All points whose markers are seen inside an area.
std::vector<PointIndex> points_inside(const GraphContent& content, const QCPAxis& x, const QCPAxis& y,
                                      const QRectF& area);

}  // namespace graph
