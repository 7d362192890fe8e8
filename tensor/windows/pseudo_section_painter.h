// pseudo_section_painter.h: a pseudo-section with its axes, stations and colour bar, for the window, pictures
// and pages.
#pragma once
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <QString>
#include <compare>
#include <optional>
#include <vector>

#include "platform/graph/axis_view.h"
#include "tensor/pseudo_section.h"

namespace Module_tensor {

struct RingedPoint {
  std::size_t station_index = 0;  // in the line
  float frequency = 0.0F;         // Hz

  auto operator<=>(const RingedPoint&) const = default;
};

/// Everything that a picture of a section shows.
struct PseudoSectionPicture {
  PseudoSection section;
  ColourScale scale;
  SectionRange across;   // of the whole picture, m
  SectionRange heights;  // likewise
  QString title;
  QString x_title = "Station (m)";
  QString note;           // in place of a section without points
  bool in_order = false;  // x counts the stations
  bool period_up = false;
  bool contours = false;
  bool points = true;                 // dots where data are, crosses where they are masked
  bool hide_masked = false;           // no crosses
  std::optional<std::size_t> framed;  // index of a station of the line
  std::vector<RingedPoint> ringed;    // points that are proposed for something, ascending
};

/// Gives a picture its own limits as the limits of the whole.
void show_whole(PseudoSectionPicture& picture);

/// The part that is in view. Places are shares of the whole, from 0 at the left and the top to 1.
struct PseudoSectionView {
  graph::AxisView across{graph::picture_zoom};
  graph::AxisView down{graph::picture_zoom};
};

/// Where the section itself is drawn.
QRectF pseudo_section_plot(QSize picture);

void paint_pseudo_section(QPainter& painter, QSize size, const PseudoSectionPicture& picture,
                          const PseudoSectionView& view);

/// What lies under a pixel.
struct PseudoSectionPlace {
  const SectionColumn* column = nullptr;  // none: beside all of them
  const SectionPoint* point = nullptr;    // none: nothing was measured there
};
PseudoSectionPlace pseudo_section_place(QSize size, const PseudoSectionPicture& picture,
                                        const PseudoSectionView& view, QPointF at);

/// The pixel of a point, for a pointer to go to.
QPointF pseudo_section_pixel(QSize size, const PseudoSectionPicture& picture, const PseudoSectionView& view,
                             const SectionColumn& column, const SectionPoint& point);

}  // namespace Module_tensor
