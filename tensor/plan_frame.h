// plan_frame.h: the part of a plan that a picture shows, and its arithmetic.
//
// Conventions: east, north in m; picture places in pixels from the upper left corner, y downwards. One scale
// serves both directions.
#pragma once
#include <span>

#include "tensor/site_map.h"

namespace Module_tensor {

struct PicturePlace {
  double x = 0.0;  // pixels
  double y = 0.0;
};

struct PlanFrame {
  double east = 0.0;   // m, what the middle of the picture shows
  double north = 0.0;  // m
  double scale = 1.0;  // pixels for each metre, above 0

  bool operator==(const PlanFrame&) const = default;
};

struct FrameSize {
  double width = 0.0;  // pixels
  double height = 0.0;
};

/// Takes all sites in, with a margin around them. One site, or all at one place, get a kilometre around them.
/// @param margin  pixels
PlanFrame fitted_frame(std::span<const MapSite> sites, FrameSize size, double margin);

/// Where a place is drawn. @param east, north  m
PicturePlace to_picture(const PlanFrame& frame, FrameSize size, double east, double north);

/// The frame with its scale times a factor and the same place under a point of the picture. The scale stays
/// within bounds in which a picture can be drawn.
PlanFrame zoomed(const PlanFrame& frame, FrameSize size, double factor, PicturePlace about);

/// The frame moved with the pointer by so many pixels.
PlanFrame dragged(const PlanFrame& frame, double x, double y);

/// The longest of 1, 2, 5, 10, 20, ... m, and such below 1 m, that takes at most so many pixels.
double bar_length(const PlanFrame& frame, double pixels);

}  // namespace Module_tensor
