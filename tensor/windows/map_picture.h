// map_picture.h: the sites of a line or survey in plan with phase-tensor ellipses and induction arrows at one
// period, as a picture for screen, file and document.
//
// The letters and lines are those of all pictures, on white whatever the desktop has. Up is grid north.
#pragma once
#include <QPainter>
#include <optional>

#include "tensor/map_contents.h"

namespace Module_tensor {

/// Within the axes.
QRectF map_area(const QRectF& picture);
FrameSize frame_size(const QRectF& picture);
/// What the picture shows: its frame, or that of all sites.
PlanFrame shown_frame(const MapContents& contents, const QRectF& area);
/// Pixels of the longest half axis of an ellipse.
double ellipse_radius(const MapContents& contents, const PlanFrame& frame);
/// The site at a point: the nearest one whose glyph is there; none beside the glyphs.
std::optional<std::size_t> site_at(const MapContents& contents, const QRectF& area, QPointF at);

void paint_map(QPainter& painter, const QRectF& area, const MapContents& contents);

}  // namespace Module_tensor
