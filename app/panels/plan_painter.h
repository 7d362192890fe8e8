// plan_painter.h: draws the plan: graticule, stations with their names, lines, scale, north.
//
// The picture is that of the plan window, to which display/plan_view goes; white whatever the desktop has.
#pragma once
#include <QPainter>
#include <QSize>
#include <QString>
#include <optional>
#include <vector>

#include "numerics/geodesy/coordinate_transforms.h"
#include "tensor/colour_scale.h"

/// What the stations are coloured by.
struct PlanColouring {
  std::vector<double> values;  // of each station; resistivities as log10 ohm-m; absent where there is none
  Module_tensor::ColourScale scale;
  QString title;  // "ExHy, 1 Hz"
  QString unit;
  bool powers = false;  // the values are logarithms
};

struct PlanContents {
  std::optional<PlanColouring> colouring;  // none: black dots
  /// Of map coordinates, for the graticule; none while other coordinates are shown or nothing is known.
  std::optional<numerics::geodesy::TransformParameters> system;
};

void paint_plan(QPainter& painter, QSize size, const PlanContents& contents);
