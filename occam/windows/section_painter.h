// section_painter.h: a model section with its axes, sites and colour bar, for the window, pictures and pages.
#pragma once
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <QString>
#include <string>
#include <vector>

#include "formats/occam/occam_data.h"
#include "occam/results/section_geometry.h"
#include "platform/graph/axis_view.h"
#include "platform/graph/image_palette.h"

namespace Module_occam {

/// What the colours of a section stand for.
struct SectionQuantity {
  std::string name = "Resistivity";
  std::string unit = "log10 ohm-m";
  bool is_resistivity = true;
};

/// Everything that a picture of a section shows.
struct SectionPicture {
  SectionGeometry geometry;
  SectionChoices choices;
  graph::Palette palette = {};
  bool draw_mesh = false;
  SectionQuantity quantity;
  std::vector<double>
      visibility;  // of each parameter, 0 to 1: how much of its colour a block keeps; empty: all
  QString note;    // shown in the middle of a picture without rectangles
};

/// The part of a section that is in view. Places are shares of the whole, from 0 at the left and the top
/// to 1.
struct SectionZoom {
  graph::AxisView across{graph::picture_zoom};
  graph::AxisView down{graph::picture_zoom};
};

/// The part of a drawing of this size for the section and its frame; the colour bar is beside it.
PictureSize section_part(QSize drawing);

/// Where the section itself is drawn.
QRectF plot_area(PictureSize picture);

/// @param sites  marked at the ground, by name where there is room
void paint_section(QPainter& painter, const SectionPicture& picture, const OccamData& sites,
                   const SectionZoom& zoom);

/// Text about a place of the drawing: "Distance 250.0 m   Depth 80.0 m   Resistivity 1.50 log10 ohm-m
/// (31.62 ohm-m)", "NA" off the blocks; empty outside the section.
std::string section_text(const SectionPicture& picture, const OccamData& sites, const SectionZoom& zoom,
                         QPointF at);

}  // namespace Module_occam
