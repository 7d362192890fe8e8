// plan_painter.h: draws the plan: graticule, stations with their names, lines, scale, north.
//
// The picture is that of the plan window, to which display/plan_view goes; white whatever the desktop has.
// What is the same for all stations is kept: a step to the next one costs the work of its line, in a survey
// of any size.
#pragma once
#include <QPainter>
#include <QSize>
#include <QString>
#include <memory>
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
  std::shared_ptr<const PlanColouring> colouring;  // none: black dots
  /// Of map coordinates, for the graticule; none while other coordinates are shown or nothing is known.
  std::optional<numerics::geodesy::TransformParameters> system;

  bool operator==(const PlanContents&) const = default;
};

class PlanPainter {
 public:
  PlanPainter();
  ~PlanPainter();

  void paint(QPainter& painter, QSize size, const PlanContents& contents);
  /// Other stations are displayed from now on, or these at other places.
  void forget_stations();

 private:
  struct Layers;
  std::unique_ptr<Layers> layers_;  // of the last painting
};
